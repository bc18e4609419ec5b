vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    vec3 col = PREV(uv - vec2(0.0, 2.0 / RES.y));
    float m = abs(uv.x - 0.5) * 2.0;
    float s = SP(m * 0.95);
    vec3 low = mix(vec3(0.0), PAL(0.6) * 0.7, smoothstep(0.0, 0.35, s));
    vec3 high = mix(PAL(0.1), vec3(1.0), smoothstep(0.75, 1.0, s));
    vec3 heat = mix(low, high, smoothstep(0.3, 0.8, s));
    if (uv.y < 3.0 / RES.y) col = heat;
    return col;
}
