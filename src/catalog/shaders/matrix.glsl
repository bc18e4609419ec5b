vec3 vis(vec2 p, vec2 uv) {
    const vec2 N = vec2(48.0, 27.0);
    vec2 g = uv * N;
    vec2 id = floor(g);
    vec2 f = (fract(g) - 0.5) * vec2(RES.x / N.x, RES.y / N.y) / (RES.y / N.y);
    float x = (id.x + 0.5) / N.x;
    float y = (id.y + 0.5) / N.y;
    float s = SP(x * 0.9 + 0.02);
    float on = smoothstep(y - 0.5 / N.y, y + 0.5 / N.y, s * 1.05);
    float near = smoothstep(1.5 / N.y, 0.0, abs(s - y));
    float r = mix(0.1, 0.36, on);
    float d = length(f);
    vec3 c = mix(mix(PAL(0.25 + 0.05 * sin(TIME * 0.1 + x * 3.0)), PAL(0.75), y), vec3(1.0), 0.5 * near * on);
    vec3 col = PAL(0.75) * 0.025 * (1.0 - uv.y * 0.5);
    float aa = N.y / RES.y;
    col += mix(PAL(0.75) * 0.07 + 0.03, c, on) * smoothstep(r + aa, r - aa - 0.04, d);
    col += c * on * 0.35 * exp(-6.0 * d) * (0.6 + 0.6 * near);
    return tm(col * 1.1);
}
