vec3 vis(vec2 p, vec2 uv) {
    // two standing modes on a square plate; sand gathers where they cancel
    float n = 2.0 + floor(SP(0.05) * 4.0 + 0.5) + 0.5 * sin(MT * 0.07);
    float m = 3.0 + floor(SP(0.35) * 5.0 + 0.5) + 0.5 * cos(MT * 0.05);
    vec2 x = p * 1.05;
    float f = cos(n * PI * x.x) * cos(m * PI * x.y) - cos(m * PI * x.x) * cos(n * PI * x.y);
    float g = length(vec2(dFdx(f), dFdy(f))) + 1e-4;
    float d = abs(f) / g / RES.y * 2.0;
    float width = 0.006 + LVL * 0.012;
    float grain = h21(floor(uv * RES) + 0.37);
    float sand = smoothstep(width, 0.0, d * 0.6 + grain * width * 0.9);
    float halo = exp(-d * 25.0);
    vec3 col = PAL(0.75) * 0.05 * (1.0 - 0.3 * length(p));
    col += PAL(0.75) * 0.03 * grain;
    col += mix(PAL(0.0), PAL(0.5), grain) * sand * 1.3;
    col += PAL(0.25) * halo * 0.12;
    col += PAL(0.0) * step(0.97, grain) * 0.25 * (1.0 - halo);
    return tm(col);
}
