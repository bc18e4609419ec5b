vec3 vis(vec2 p, vec2 uv) {
    vec2 q = p - MOUSE * 0.35;
    float r = max(length(q), 1e-3);
    float a = atan(q.y, q.x + 1e-7);
    float z = 0.5 / r + MT * 1.6;
    const float N = 24.0;
    float seg = (a / TAU + 0.5) * N;
    vec2 cell = vec2(floor(seg), floor(z * 2.5));
    vec2 f = vec2(fract(seg), fract(z * 2.5)) - 0.5;
    float x = abs((cell.x + 0.5) / N * 2.0 - 1.0);
    float s = SP(x * 0.85 + 0.02);
    float on = step(h21(cell + 0.37), s * 0.9 - 0.05);
    float fade = smoothstep(0.02, 0.6, r) * exp(-0.3 / r);
    float edge = max(abs(f.x), abs(f.y));
    vec3 c = PAL(cell.x / N * 0.5 + cell.y * 0.03 + TIME * 0.02);
    float panel = smoothstep(0.46, 0.4, edge) * (0.55 + 0.45 * smoothstep(0.4, 0.0, edge));
    vec3 col = PAL(0.6) * 0.04 * fade;
    col += c * on * (0.25 + s * 0.8) * panel * fade;
    col += c * on * 0.25 * exp(-20.0 * abs(edge - 0.45)) * fade;
    col += PAL(0.2) * (0.08 + BASS * 0.5) * exp(-60.0 * abs(edge - 0.5)) * fade;
    col += PAL(0.8) * (0.25 + BASS * 0.9) * 0.05 / r;
    return tm(col * 1.3);
}
