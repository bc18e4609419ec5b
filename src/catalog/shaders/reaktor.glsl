vec3 vis(vec2 p, vec2 uv) {
    vec2 q = p - MOUSE * 0.1;
    float r = length(q);
    float a = atan(q.x, q.y);
    float at = a / TAU + 0.5;
    float px = 1.5 / RES.y;
    vec3 col = PAL(0.75) * 0.03 * exp(-r);
    vec2 gd = abs(fract(p * 10.0) - 0.5);
    col += PAL(0.6) * 0.05 * smoothstep(0.06, 0.0, length(gd)) * smoothstep(0.8, 1.2, r);
    // concentric guide rings
    for (int i = 0; i < 4; ++i) {
        float rr = 0.18 + float(i) * 0.22;
        col += PAL(0.6) * 0.18 * smoothstep(px * 1.5, 0.0, abs(r - rr));
    }
    // 24 spectrum segments
    float seg = at * 24.0;
    float id = floor(seg);
    float sx = abs((id + 0.5) / 24.0 * 2.0 - 1.0);
    float s = SP(sx * 0.9);
    float inSeg = smoothstep(0.5, 0.42, abs(fract(seg) - 0.5)) * step(0.44, r) * step(r, 0.54);
    col += mix(PAL(id / 24.0 * 0.5 + 0.1), vec3(1.0), 0.5 * smoothstep(0.7, 1.0, s)) * inSeg * (0.06 + s * 1.3);
    // tick scales: fine every 2.5 degrees, coarse every 15
    float fine = smoothstep(0.12, 0.0, abs(fract(at * 144.0) - 0.5) - 0.38) * step(0.625, r) * step(r, 0.645);
    float coarse = smoothstep(0.1, 0.0, abs(fract(at * 24.0) - 0.5) - 0.42) * step(0.6, r) * step(r, 0.66);
    col += PAL(0.5) * 0.5 * max(fine, coarse);
    // three rotating arcs, longer with mid
    for (int i = 0; i < 3; ++i) {
        float fi = float(i);
        float rr = 0.3 + fi * 0.05;
        float dir = mod1(fi, 2.0) < 0.5 ? 1.0 : -1.0;
        float ang = fract(at - MT * 0.04 * dir * (1.0 + fi * 0.5) + fi * 0.33);
        float len = 0.12 + MID * 0.25 + fi * 0.04;
        float on = step(ang, len);
        col += PAL(0.2 + fi * 0.15) * on * smoothstep(px * 2.5, 0.0, abs(r - rr)) * 0.9;
    }
    // dashed ring
    float dash = step(0.5, fract(at * 60.0 + TIME * 0.2));
    col += PAL(0.35) * 0.35 * dash * smoothstep(px * 1.5, 0.0, abs(r - 0.76));
    // radar sweep, flares on the beat
    float sw = fract(at - TIME * 0.25);
    float trail = exp(-(1.0 - sw) * 9.0) * step(r, 0.84) * step(0.06, r);
    col += PAL(0.55) * trail * (0.08 + BEAT * 0.35);
    col += mix(PAL(0.55), vec3(1.0), 0.5) * smoothstep(0.004, 0.0, (1.0 - sw) * r * TAU) * step(r, 0.84) * (0.3 + BEAT);
    // core
    col += PAL(0.6) * (0.15 + BASS * 0.9) * exp(-r * 14.0);
    col += vec3(1.0) * smoothstep(0.03 + BASS * 0.02, 0.0, r) * 0.6;
    return tm(col * 1.2);
}
