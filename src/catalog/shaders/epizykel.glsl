vec2 chain(float t, float R[8], int upto) {
    vec2 c = vec2(0.0);
    for (int i = 0; i < 8; ++i) {
        if (i >= upto) break;
        float fi = float(i);
        // alternating directions, roughly harmonic speeds
        float f = (mod1(fi, 2.0) < 0.5 ? 1.0 : -1.0) * (fi + 1.0) * (1.0 + 0.13 * fi);
        c += R[i] * vec2(cos(f * t + fi), sin(f * t + fi));
    }
    return c;
}

vec3 vis(vec2 p, vec2 uv) {
    float R[8];
    for (int i = 0; i < 8; ++i) {
        float fi = float(i);
        R[i] = 0.42 / pow(fi + 1.0, 0.9) * (0.35 + SP(fi / 8.0 * 0.8 + 0.02) * 0.9);
    }
    float t = MT * 0.2;
    vec3 col = PAL(0.6) * 0.03 * exp(-length(p));
    // circles and arms
    float dw = 1e9;
    vec2 c = vec2(0.0);
    for (int i = 0; i < 8; ++i) {
        vec2 n = chain(t, R, i + 1);
        dw = min(dw, abs(length(p - c) - R[i]));
        dw = min(dw, sdSeg(p, c, n));
        c = n;
    }
    vec2 tip = c;
    col += PAL(0.3) * 0.3 * smoothstep(0.004, 0.0, dw) + PAL(0.3) * 0.04 * exp(-dw * 50.0);
    // fading trail through the last 70 positions of the tip
    vec2 a = tip;
    for (int k = 1; k <= 70; ++k) {
        vec2 b = chain(t - float(k) * 0.045, R, 8);
        float fade = 1.0 - float(k) / 70.0;
        float d = sdSeg(p, a, b);
        col += PAL(float(k) / 70.0 * 0.6 + TIME * 0.02) * fade * (0.004 / (d + 0.004)) * 0.45;
        a = b;
    }
    float dt = length(p - tip);
    col += vec3(1.0) * (0.006 / (dt + 0.006)) * (0.5 + BEAT * 1.2);
    return tm(col);
}
