float sdTri(vec2 p, float r) {
    const float k = 1.7320508;
    p.x = abs(p.x) - r;
    p.y = p.y + r / k;
    if (p.x + k * p.y > 0.0) p = vec2(p.x - k * p.y, -k * p.x - p.y) / 2.0;
    p.x -= clamp(p.x, -2.0 * r, 0.0);
    return -length(p) * sign(p.y);
}

vec3 vis(vec2 p, vec2 uv) {
    const float R = 0.36;
    vec2 q = p - vec2(-0.1, -0.05);
    float tri = sdTri(q, R);
    vec3 col = vec3(0.012, 0.012, 0.02);
    // incoming white beam from the lower left to the left face
    vec2 entry = vec2(-0.1 - R * 0.5, -0.05 + 0.06);
    vec2 src = vec2(-ASPECT - 0.2, -0.55);
    float din = sdSeg(p, src, entry);
    float flare = 1.0 + BEAT * 1.5;
    col += vec3(1.0) * (0.006 / (din + 0.006)) * 0.5 * flare * step(0.0, tri);
    col += vec3(0.8, 0.85, 1.0) * exp(-din * 30.0) * 0.08 * flare;
    // seven spectral rays fanning out of the right face
    vec2 exitP = vec2(-0.1 + R * 0.45, -0.05 + 0.02);
    float spread = 0.05 + BASS * 0.06;
    for (int i = 0; i < 7; ++i) {
        float fi = float(i);
        float ang = -0.28 - (fi - 3.0) * spread;
        vec2 dir = vec2(cos(ang), sin(ang));
        vec2 rel = p - exitP;
        float along = dot(rel, dir);
        float side = abs(rel.x * dir.y - rel.y * dir.x);
        float w = 0.004 + along * 0.01;
        float s = SP(0.04 + fi * 0.12);
        vec3 c = hsv(fi / 7.0 * 0.8, 0.85, 1.0);
        float ray = step(0.0, along) * step(0.0, tri) * (w / (side + w)) * smoothstep(w * 6.0, 0.0, side);
        col += c * ray * (0.15 + s * 1.1);
        col += c * step(0.0, along) * exp(-side * 12.0) * 0.04 * (0.3 + s) * step(0.0, tri);
    }
    // glass body: faint fill, bright edges, light path inside
    float inside = smoothstep(0.004, -0.004, tri);
    col += vec3(0.7, 0.8, 1.0) * inside * 0.05;
    col += vec3(1.0) * inside * exp(-sdSeg(p, entry, exitP) * 25.0) * 0.35 * flare;
    col += vec3(0.85, 0.9, 1.0) * smoothstep(0.006, 0.0, abs(tri)) * 0.7;
    col += vec3(0.5, 0.6, 1.0) * exp(-abs(tri) * 40.0) * 0.12;
    return tm(col * 1.2);
}
