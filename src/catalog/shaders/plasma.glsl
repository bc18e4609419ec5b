vec3 vis(vec2 p, vec2 uv) {
    vec2 q = (p - MOUSE * 0.4) * 2.2;
    float t = MT * 0.6;
    float v = sin(q.x * 1.3 + t);
    v += sin(q.y * 1.7 - t * 0.8);
    v += sin((q.x + q.y) * 0.9 + t * 1.3);
    v += sin(length(q + vec2(sin(t * 0.5) * 2.0, cos(t * 0.4) * 1.5)) * 2.2 - t);
    v *= 0.25;
    float k = 0.9 + BASS * 1.6;
    float lum = 0.5 + 0.5 * tanh(sin(v * PI * 1.5 + t * 0.3) * k);
    vec3 col = PAL(v * 0.6 + MT * 0.04) * (0.12 + 0.7 * lum);
    float cl = abs(fract(v * 5.0) - 0.5) / (fwidth(v) * 5.0 + 1e-4);
    float line = smoothstep(1.5, 0.3, cl);
    float sp = 0.25 + HIGH * 1.4 * (0.6 + 0.4 * sin(dot(q, vec2(5.0, 3.0)) - TIME * 6.0));
    col += mix(PAL(v + 0.5), vec3(1.0), 0.5) * line * sp;
    return tm(col * 1.3);
}
