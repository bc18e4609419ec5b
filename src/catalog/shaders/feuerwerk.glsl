vec3 vis(vec2 p, vec2 uv) {
    const float C = 2.6;
    vec3 col = mix(PAL(0.75) * 0.05, vec3(0.0), uv.y);
    for (int b = 0; b < 5; ++b) {
        float fb = float(b);
        float tb = TIME + fb * C / 5.0;
        float id = floor(tb / C) + fb * 17.0;
        float lt = fract(tb / C) * C;
        vec2 c = vec2((h11(id) * 2.0 - 1.0) * ASPECT * 0.65, h11(id + 3.1) * 0.7 - 0.05);
        float s = SP(h11(id + 7.3) * 0.7 + 0.02);
        float R = 0.22 + s * 0.75;
        float ex = 1.0 - exp(-lt * 3.0);
        float fall = 0.12 * lt * lt;
        vec3 bc = PAL(h11(id + 1.7));
        float fade = pow(max(1.0 - lt / C, 0.0), 1.5);
        float br = fade * (0.4 + 2.2 * BASS);
        float dc = length(p - c + vec2(0.0, fall));
        col += mix(bc, vec3(1.0), 0.6) * 0.8 * exp(-lt * 6.0) * 0.02 / (length(p - c) + 0.02);
        col += bc * 0.1 * br * ex * exp(-2.5 * dc / R);
        if (dc > R * ex + 0.1) continue;
        float lt2 = lt * 0.55;
        float ex2 = 1.0 - exp(-lt2 * 3.0);
        float fall2 = 0.12 * lt2 * lt2;
        for (int k = 0; k < 36; ++k) {
            float fk = float(k);
            float a = (fk + 0.8 * h11(id + fk)) / 36.0 * TAU;
            float z = h11(id * 1.3 + fk) * 2.0 - 1.0;
            float sp = R * sqrt(1.0 - z * z);
            vec2 dir = vec2(cos(a), sin(a)) * sp;
            vec2 hp = c + dir * ex - vec2(0.0, fall);
            vec2 tp = c + dir * ex2 - vec2(0.0, fall2);
            vec2 pa = p - tp, ba = hp - tp;
            float h = clamp(dot(pa, ba) / max(dot(ba, ba), 1e-6), 0.0, 1.0);
            float d = length(pa - ba * h);
            float dh = length(p - hp);
            float tw = 0.55 + 0.45 * sin(TIME * 27.0 + fk * 2.1 + id);
            col += bc * br * h * h * 0.003 / (d + 0.003) * 0.65 * smoothstep(0.05, 0.0, d);
            col += mix(bc, vec3(1.0), 0.6) * br * tw * 0.004 / (dh + 0.004) * 0.4 * smoothstep(0.04, 0.0, dh);
        }
    }
    return tm(col);
}
