vec3 vis(vec2 p, vec2 uv) {
    const float HZ = -0.35;
    float t = clamp((p.y - HZ) / 1.35, 0.0, 1.0);
    vec3 col = mix(mix(PAL(0.2), PAL(0.0), smoothstep(0.0, 0.35, t)), PAL(0.8) * 0.3, smoothstep(0.2, 1.0, t));
    col *= 0.75 - 0.45 * t;

    vec2 sc = vec2(clamp(MOUSE.x, -ASPECT * 0.75, ASPECT * 0.75), 0.02);
    float R = 0.4 + BASS * 0.08;
    float ds = length(p - sc);
    float k = clamp((sc.y + R - p.y) / (2.0 * R), 0.0, 1.0);
    // retro cut-outs widen towards the bottom of the sun
    float cut = step(k, 0.5) + step(0.5, k) * step(0.12 + (k - 0.5) * 0.9, fract((p.y - sc.y) * 14.0 + TIME * 0.2));
    vec3 sun = mix(mix(PAL(0.5), vec3(1.0), 0.15), PAL(0.0), smoothstep(0.15, 0.9, k));
    col = mix(col, sun, smoothstep(0.004, -0.004, ds - R) * cut);
    col += PAL(0.15) * 0.3 * exp(-max(ds - R, 0.0) * 3.5) * (1.0 - 0.5 * step(ds, R));

    for (int L = 0; L < 2; ++L) {
        float fl = float(L);
        float w = 0.15 + fl * 0.07;
        float gx = p.x / w + fl * 0.37;
        float id = floor(gx);
        float fx = fract(gx);
        float h = h11(id + fl * 31.0);
        float cx = (id + 0.5 - fl * 0.37) * w;
        float s = SP(clamp(0.5 + cx / (2.0 * ASPECT), 0.0, 1.0) * 0.8 + 0.02);
        float top = HZ + (L == 0 ? 0.12 + h * 0.2 + s * 0.55 : -0.12 + h * 0.16 + s * 0.42);
        float bw = 0.32 + 0.14 * h;
        float inb = step(abs(fx - 0.5), bw) * step(p.y, top);
        // antenna on some of the tall ones
        inb = max(inb, step(0.75, h) * step(abs(fx - 0.5), 0.02) * step(p.y, top + 0.08));
        if (inb < 0.5) continue;
        if (L == 0) {
            col = mix(PAL(0.8) * 0.14, PAL(0.1) * 0.12, smoothstep(top, HZ, p.y));
        } else {
            col = PAL(0.8) * 0.03;
            vec2 wg = vec2((fx - 0.5 + bw) * w / 0.032, (top - p.y) / 0.045);
            vec2 wid = floor(wg), wf = fract(wg);
            float hw = h21(wid + id * 7.3);
            float on = step(hw, 0.2 + HIGH * 0.55) * step(0.5, h21(wid + id + floor(TIME * 0.7 + hw * 9.0)) + 0.35);
            float win = step(abs(wf.x - 0.5), 0.28) * step(abs(wf.y - 0.5), 0.3) * step(1.0, wid.y) * step(wg.x + 0.6, bw * 2.0 * w / 0.032);
            col += mix(PAL(0.5), vec3(1.0), 0.2) * win * on * (0.6 + 0.4 * hw);
        }
    }
    return col;
}
