float curve(float x) {
    const float d = 1.0 / 63.0;
    return (SP(x - d) + 2.0 * SP(x) + SP(x + d)) * 0.25;
}

vec3 vis(vec2 p, vec2 uv) {
    float W = ASPECT * 0.9, base = -0.45, H = 1.25;
    float t = (p.x + W) / (2.0 * W);
    bool refl = p.y < base;
    float y = refl ? 2.0 * base - p.y : p.y;
    vec3 col = PAL(0.2) * 0.04 * (1.0 - uv.y * 0.6);
    if (t < 0.0 || t > 1.0) return col;

    // horizontal grid
    float gy = (y - base) / H * 8.0;
    float grid = smoothstep(0.03, 0.0, abs(fract(gy + 0.5) - 0.5)) * step(0.0, gy) * step(gy, 8.2);
    col += PAL(0.6) * 0.07 * grid;

    const float e = 0.004;
    float c = curve(t);
    float cy = base + c * H;
    float slope = (curve(t + e) - curve(t - e)) / (2.0 * e) * H / (2.0 * W);
    float d = abs(y - cy) / sqrt(1.0 + slope * slope);
    float pk = PK(t);
    float py = base + pk * H;
    float pslope = (PK(t + e) - PK(t - e)) / (2.0 * e) * H / (2.0 * W);
    float dp = abs(y - py) / sqrt(1.0 + pslope * pslope);

    vec3 lc = PAL(t * 0.6 + 0.1);
    float fill = step(y, cy) * smoothstep(base - 0.01, cy, y);
    vec3 o = mix(PAL(0.8) * 0.1, lc * 0.55, fill) * step(y, cy);
    o += mix(lc, vec3(1.0), 0.4) * smoothstep(0.006, 0.0, d) * 1.2;
    o += lc * 0.012 / (d + 0.012) * 0.4;
    o += vec3(1.0) * smoothstep(0.003, 0.0, dp) * 0.9 * step(0.01, pk);
    if (refl) o *= 0.3 * smoothstep(base - 0.3, base, p.y);
    return tm(col + o);
}
