float mapSp(vec3 q, out float band) {
    float R = 0.62 + BASS * 0.1;
    float r = length(q);
    // spikes sit on a latitude/longitude grid, fewer towards the poles
    const float NL = 12.0;
    float th = acos(clamp(q.y / max(r, 1e-5), -1.0, 1.0));
    float row = clamp(floor(th / PI * NL), 0.0, NL - 1.0);
    float thc = (row + 0.5) / NL * PI;
    float nc = max(floor(sin(thc) * NL * 2.0), 3.0);
    float ph = atan(q.z, q.x + 1e-6) + row * 0.37;
    float col = floor((ph / TAU + 0.5) * nc);
    float phc = (col + 0.5) / nc * TAU - PI - row * 0.37;
    vec3 ax = vec3(sin(thc) * cos(phc), cos(thc), sin(thc) * sin(phc));
    band = fract(row * 0.137 + col / nc * 0.61);
    float len = 0.08 + SP(band * 0.85 + 0.02) * 0.75;
    // cone along the axis, thinner towards its tip
    float h = clamp(dot(q, ax) - R * 0.8, 0.0, len + R * 0.2);
    float w = 0.06 * (1.0 - h / (len + R * 0.2)) + 0.004;
    float spike = length(q - ax * (R * 0.8 + h)) - w;
    return smin(r - R, spike, 0.08);
}

vec3 vis(vec2 p, vec2 uv) {
    float ca = MT * 0.25 + MOUSE.x * 2.0;
    float el = 0.3 + MOUSE.y * 1.2;
    vec3 ro = vec3(sin(ca) * cos(el), sin(el), -cos(ca) * cos(el)) * 3.1;
    vec3 rd = rayDir(p, ro, vec3(0.0), 1.7);
    float band = 0.0;
    float t = 1.6, md = 1e3;
    bool hit = false;
    for (int i = 0; i < 90; ++i) {
        vec3 q = ro + rd * t;
        float d = mapSp(q, band) * 0.6;
        md = min(md, d);
        if (d < 0.001) { hit = true; break; }
        t += d;
        if (t > 6.0) break;
    }
    // faint nebula fixed in the world, so turning the view shows
    vec3 col = PAL(0.7) * 0.12 * fbm(rd.xy * 2.0 / (1.2 + rd.z) + 3.0) + PAL(0.1) * 0.25 * exp(-length(p) * 2.5) * (0.3 + BASS * 1.4);
    if (hit) {
        vec3 q = ro + rd * t;
        vec2 e = vec2(0.002, 0.0);
        float b0;
        vec3 n = normalize(vec3(mapSp(q + e.xyy, b0) - mapSp(q - e.xyy, b0), mapSp(q + e.yxy, b0) - mapSp(q - e.yxy, b0), mapSp(q + e.yyx, b0) - mapSp(q - e.yyx, b0)));
        float tip = smoothstep(0.7, 1.3, length(q));
        vec3 base = mix(PAL(0.55 + band * 0.3) * 0.4, PAL(band), tip);
        vec3 ld = normalize(vec3(0.5, 0.8, -0.4));
        float dif = max(dot(n, ld), 0.0);
        float spc = pow(max(dot(reflect(rd, n), ld), 0.0), 24.0);
        float rim = pow(1.0 - max(dot(n, -rd), 0.0), 3.0);
        col = base * (0.15 + dif * 0.9) + vec3(spc * 0.6) + PAL(0.0) * rim * 0.6;
        col += PAL(band) * tip * SP(band * 0.85 + 0.02) * 1.2;
    } else {
        col += PAL(0.0) * 0.05 / (md + 0.05) * (0.2 + BASS * 0.6);
    }
    return tm(col * 1.1);
}
