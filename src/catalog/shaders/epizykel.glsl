vec2 chain(float t, float R[8], int upto) {
    vec2 c = vec2(0.0);
    for (int i = 0; i < 8; ++i) {
        if (i >= upto) break;
        float fi = float(i);
        // alternating directions, harmonic speeds keep the curve closed and smooth
        float f = (mod1(fi, 2.0) < 0.5 ? 1.0 : -1.0) * (fi + 1.0);
        c += R[i] * vec2(cos(f * t + fi * 1.3), sin(f * t + fi * 1.3));
    }
    return c;
}

vec3 vis(vec2 p, vec2 uv) {
    float R[8];
    float tot = 0.0;
    for (int i = 0; i < 8; ++i) {
        float fi = float(i);
        R[i] = 0.5 / pow(fi + 1.0, 0.85) * (0.5 + SP(fi / 8.0 * 0.8 + 0.02) * 0.7);
        tot += R[i];
    }
    // keep the curve on screen when everything is loud
    float k0 = min(1.0, 1.3 / tot);
    for (int i = 0; i < 8; ++i) R[i] *= k0;
    float t = MT * 0.25;
    float px = 1.0 / RES.y;
    vec3 col = PAL(0.6) * 0.05 * exp(-length(p) * 1.2);
    // circles and arms
    float dc = 1e9, da = 1e9, dj = 1e9;
    vec2 c = vec2(0.0);
    for (int i = 0; i < 8; ++i) {
        vec2 n = chain(t, R, i + 1);
        dc = min(dc, abs(length(p - c) - R[i]));
        da = min(da, sdSeg(p, c, n));
        dj = min(dj, length(p - c));
        c = n;
    }
    vec2 tip = c;
    float lw = 1.5 * px + 0.0015;
    col += PAL(0.45) * (0.55 * smoothstep(lw, 0.0, dc) + 0.06 * exp(-dc * 60.0));
    col += mix(PAL(0.15), vec3(1.0), 0.5) * (0.9 * smoothstep(lw * 1.6, 0.0, da) + 0.1 * exp(-da * 50.0));
    col += vec3(0.9) * smoothstep(0.012, 0.006, dj);
    // fading trail through the last 70 positions of the tip: brightest segment wins, so joints do not pile up
    float core = 0.0, glow = 0.0, kb = 0.0;
    vec2 a = tip;
    for (int k = 1; k <= 70; ++k) {
        vec2 b = chain(t - float(k) * 0.065, R, 8);
        float fade = 1.0 - float(k) / 71.0;
        float d = sdSeg(p, a, b);
        float v = fade * smoothstep(lw * 2.2, lw * 0.5, d);
        if (v > core) { core = v; kb = float(k); }
        glow = max(glow, fade * fade * exp(-d * 28.0));
        a = b;
    }
    vec3 tc = PAL(kb / 70.0 * 0.5 + TIME * 0.02);
    col += mix(tc, vec3(1.0), 0.35 * core) * core * 1.6 + PAL(0.1 + TIME * 0.02) * glow * 0.45;
    float dt = length(p - tip);
    col += vec3(1.0) * (0.01 / (dt + 0.01)) * (0.6 + BEAT * 1.6) + PAL(0.1) * exp(-dt * 18.0) * (0.3 + BEAT);
    return tm(col);
}
