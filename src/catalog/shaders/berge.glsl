vec3 vis(vec2 p, vec2 uv) {
    float s = SP(abs(uv.x - 0.5) * 2.0 * 0.8 + 0.02);
    vec3 haze = mix(PAL(0.1), PAL(0.5), 0.3);
    vec3 col = mix(haze * 0.8, PAL(0.8) * 0.1, smoothstep(-0.1, 1.0, p.y));

    vec2 sc = vec2(0.0, 0.3);
    float ds = length(p - sc);
    float R = 0.2 + BASS * 0.05;
    col += mix(vec3(1.0), PAL(0.5), 0.4) * (0.25 * exp(-max(ds - R, 0.0) * 7.0) + 0.12 * exp(-ds * 1.6)) * (0.6 + BASS);
    col = mix(col, vec3(1.0), smoothstep(0.004, -0.004, ds - R));

    for (int i = 0; i < 5; ++i) {
        float fi = float(i);
        float x = p.x * (1.1 + fi * 0.3) + MT * (0.04 + fi * 0.045) + fi * 13.1;
        float ridge = fbm(vec2(x, fi * 3.7));
        float y = 0.3 - fi * 0.21 + (ridge - 0.45) * (0.45 + fi * 0.08) * (0.6 + s * (0.9 + fi * 0.2));
        float m = smoothstep(y + 0.003, y - 0.003, p.y);
        // far ranges melt into the haze, near ones are dark; mist gathers in the valleys
        vec3 c = mix(haze * 0.75, PAL(1.0 - fi * 0.065) * 0.8, 0.35 + fi * 0.1) * pow(0.6, fi);
        c = mix(c, haze * 0.5 * pow(0.7, fi), smoothstep(y - 0.05, y - 0.4, p.y) * 0.5);
        col = mix(col, c, m);
    }
    return col;
}
