vec3 vis(vec2 p, vec2 uv) {
    float xn = p.x / ASPECT;
    float env = pow(max(1.0 - xn * xn * 1.15, 0.0), 2.0);
    vec3 col = PAL(0.25) * 0.05 * exp(-abs(p.y) * 3.0);
    for (int i = 0; i < 4; ++i) {
        float fi = float(i);
        float s = SP(0.04 + fi * 0.16);
        float a = (0.04 + s * 0.45 + LVL * 0.15) * env;
        float xo = (xn - 0.35 * sin(MT * (0.4 + 0.13 * fi) + fi * 1.9)) * 2.6;
        float sh = exp(-xo * xo);
        float y = a * sh * sin(p.x * (3.0 + 1.3 * fi) - MT * (1.5 + 0.4 * fi) + fi * 2.0);
        float ay = abs(y);
        float d = abs(abs(p.y) - ay);
        vec3 c = PAL(fi * 0.25 + 0.05);
        float fill = smoothstep(ay + 0.004, ay - 0.004, abs(p.y)) * (0.12 + 0.35 * abs(p.y) / (ay + 0.02));
        col += c * fill * 0.45;
        col += c * (smoothstep(0.006, 0.0, d) * 0.8 + 0.004 / (d + 0.004) * 0.25) * smoothstep(0.0, 0.02, ay + 0.005);
    }
    float cl = smoothstep(0.006, 0.0, abs(p.y)) + 0.003 / (abs(p.y) + 0.003) * 0.4;
    col += mix(PAL(0.1), vec3(1.0), 0.7) * cl * (0.35 + 0.65 * env) * (0.6 + LVL);
    return tm(col * 1.2);
}
