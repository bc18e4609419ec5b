vec3 vis(vec2 p, vec2 uv) {
    const vec2 G = vec2(64.0, 36.0);
    vec2 g = uv * G;
    vec2 id = floor(g), f = fract(g) - 0.5;
    float x = abs(id.x + 0.5 - G.x * 0.5) / (G.x * 0.5);
    float s = SP(x * 0.9);
    float pk = PK(x * 0.9);
    float lit = step(id.y + 0.5, max(s * G.y, 1.0));
    float isPeak = step(abs(id.y - floor(pk * G.y)), 0.5) * step(0.03, pk);
    // colour changes in steps of four rows
    vec3 c = PAL(floor(id.y / 4.0) / 9.0 * 0.85);
    float box = step(max(abs(f.x), abs(f.y)), 0.38);
    vec3 col = vec3(0.015, 0.015, 0.03) + c * 0.04 * box;
    col += c * lit * box * 1.0;
    col += c * lit * 0.15;
    col = mix(col, vec3(1.0), isPeak * box);
    float scan = 0.78 + 0.22 * sin(uv.y * RES.y * PI * 0.5);
    return col * scan;
}
