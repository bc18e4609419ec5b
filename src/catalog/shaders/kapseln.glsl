vec3 vis(vec2 p, vec2 uv) {
    const float N = 24.0;
    float span = ASPECT * 1.76;
    float dx = span / N;
    vec3 bg = mix(mix(PAL(0.5), vec3(1.0), 0.82), mix(PAL(0.0), vec3(1.0), 0.55), uv.y * 0.6 + 0.2 * uv.x);
    vec3 col = bg * (1.0 - 0.12 * length(p) / ASPECT);
    float cid = floor((p.x + span * 0.5) / dx);
    float shadow = 0.0;
    vec4 cap = vec4(1e3);
    for (int k = -1; k <= 1; ++k) {
        float i = cid + float(k);
        if (i < 0.0 || i > N - 1.0) continue;
        float x = -span * 0.5 + (i + 0.5) * dx;
        float s = SP(i / N * 0.9 + 0.02);
        float h = 0.04 + s * 0.78;
        float w = dx * 0.32;
        vec2 ps = p - vec2(x, 0.0) - vec2(0.035, -0.06);
        float ds = length(vec2(ps.x, max(abs(ps.y) - h, 0.0))) - w;
        shadow = max(shadow, smoothstep(0.09, -0.03, ds));
        vec2 pc = p - vec2(x, 0.0);
        float d = length(vec2(pc.x, max(abs(pc.y) - h, 0.0))) - w;
        if (d < cap.x) cap = vec4(d, pc.x / w, i / N, s);
    }
    col *= 1.0 - 0.28 * shadow;
    vec3 c = mix(PAL(cap.z * 0.75 + 0.1), vec3(1.0), 0.25);
    float shade = 0.78 + 0.3 * sqrt(max(1.0 - cap.y * cap.y, 0.0)) - 0.12 * cap.y;
    c = c * shade + 0.3 * smoothstep(0.35, 0.0, abs(cap.y + 0.45)) * (0.5 + cap.w);
    col = mix(col, c, smoothstep(0.004, -0.002, cap.x));
    return clamp(col, 0.0, 1.0);
}
