vec3 vis(vec2 p, vec2 uv) {
    vec2 q = rot(0.45 + MOUSE.x * 0.6 + sin(TIME * 0.1) * 0.1) * p;
    q.y *= 1.0 + MOUSE.y * 0.4;
    float R = 0.3 + BASS * 0.09;
    const float K = 5.0;
    float ph = q.x * K - MT * 1.5;
    vec3 col = PAL(0.6) * 0.03 * (1.0 - abs(q.y) * 0.5);
    // drifting particles
    vec2 g = p * 9.0 + vec2(TIME * 0.1, 0.0);
    vec2 id = floor(g);
    col += PAL(0.2) * 0.3 * step(0.85, h21(id)) * smoothstep(0.12, 0.0, length(fract(g) - h22(id)));
    float fade = smoothstep(2.2, 1.2, abs(q.x));
    // rungs, drawn first so the strands in front cover them
    float sp = TAU / K / 5.0;
    float k = floor((q.x + MT * 1.5 / K) / sp + 0.5);
    float xk = k * sp - MT * 1.5 / K;
    float a = xk * K - MT * 1.5;
    float y1 = R * sin(a), y2 = -y1;
    float dep = cos(a);
    float sb = SP(h11(k * 0.31) * 0.8 + 0.03);
    float dr = sdSeg(q, vec2(xk, y1), vec2(xk, y2));
    vec3 rc = PAL(0.35 + h11(k) * 0.3) * (0.4 + sb * 1.6);
    col += rc * fade * (smoothstep(0.012, 0.004, dr) * 0.8 + 0.004 / (dr + 0.004) * 0.3) * (0.6 + 0.4 * abs(dep));
    // the two strands; the slope correction keeps the tube width even
    for (int s = 0; s < 2; ++s) {
        float o = float(s) * PI;
        float y = R * sin(ph + o);
        float z = cos(ph + o);
        float sl = R * K * cos(ph + o);
        float d = abs(q.y - y) / sqrt(1.0 + sl * sl);
        float w = 0.024 + 0.012 * z;
        vec3 sc = PAL(float(s) * 0.5 + 0.05) * (0.55 + 0.45 * z);
        float body = smoothstep(w, w * 0.5, d);
        col = mix(col, sc * (0.5 + 0.5 * (1.0 - d / w)), body * fade * smoothstep(-0.9, 0.2, z));
        col += sc * 0.006 / (d + 0.006) * 0.3 * fade;
    }
    return tm(col * 1.3);
}
