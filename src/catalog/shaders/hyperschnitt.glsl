float sdTess(vec4 q, float b) {
    vec4 d = abs(q) - b;
    return length(max(d, 0.0)) + min(max(max(d.x, d.y), max(d.z, d.w)), 0.0);
}

// The 3-D slicing space, turned inside four-dimensional space.
vec4 lift(vec3 p) {
    vec4 q = vec4(p, 0.0);
    q.xw = rot(MT * 0.3) * q.xw;
    q.zw = rot(MT * 0.19 + 0.6) * q.zw;
    q.yw = rot(MT * 0.13 + 0.3) * q.yw;
    q.xy = rot(MT * 0.1) * q.xy;
    return q;
}

float map4(vec3 p) {
    return sdTess(lift(p), 0.75 + BASS * 0.12);
}

vec3 vis(vec2 p, vec2 uv) {
    float a = TIME * 0.12 + MOUSE.x * 2.0;
    float el = 0.4 + MOUSE.y * 0.8;
    vec3 ro = vec3(cos(a) * cos(el), sin(el), sin(a) * cos(el)) * 4.2;
    vec3 rd = rayDir(p, ro, vec3(0.0), 1.8);
    float t = 1.5, dmin = 9.0;
    bool hit = false;
    for (int i = 0; i < 80; ++i) {
        float d = map4(ro + rd * t);
        dmin = min(dmin, d);
        if (d < 0.001) { hit = true; break; }
        t += d;
        if (t > 8.0) break;
    }
    vec3 col = PAL(0.6) * 0.03 * (1.2 - length(p) * 0.5);
    if (!hit) return tm(col + PAL(0.5) * 0.25 * exp(-dmin * 10.0));
    vec3 pos = ro + rd * t;
    vec2 e = vec2(0.002, -0.002);
    vec3 n = normalize(e.xyy * map4(pos + e.xyy) + e.yyx * map4(pos + e.yyx) + e.yxy * map4(pos + e.yxy) + e.xxx * map4(pos + e.xxx));
    // Distances to the tesseract's faces; the second smallest is the distance to its square faces.
    vec4 f = abs(abs(lift(pos)) - (0.75 + BASS * 0.12));
    vec2 lo = vec2(min(f.x, f.y), max(f.x, f.y)), hi = vec2(min(f.z, f.w), max(f.z, f.w));
    float second = min(max(lo.x, hi.x), min(lo.y, hi.y));
    float third = min(max(lo.y, hi.x), max(lo.x, hi.y));
    third = max(third, second);
    float w = 0.025 + BASS * 0.03;
    float edge = smoothstep(w, 0.0, second);
    float corner = smoothstep(w * 2.5, 0.0, length(vec2(second, third)));
    float nv = max(-dot(n, rd), 0.0);
    vec3 L = normalize(vec3(0.5, 0.8, 0.3));
    vec3 face = PAL(dot(n, vec3(0.3, 0.5, 0.2)) + 0.55 + TIME * 0.02);
    col = face * (0.1 + 0.4 * max(dot(n, L), 0.0)) + PAL(0.6) * pow(1.0 - nv, 3.0) * 0.3;
    col += PAL(0.0) * edge * (0.4 + SP(0.08) * 1.6);
    col += vec3(1.0) * corner * (0.5 + SP(0.2) * 1.5);
    return tm(col * 1.3);
}
