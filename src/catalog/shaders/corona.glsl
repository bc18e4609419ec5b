vec3 vis(vec2 p, vec2 uv) {
    float r = length(p);
    vec2 dir = p / max(r, 1e-4);
    float x = abs(atan(p.x, p.y + 1e-6)) / PI;
    float s = SP(x * 0.8 + 0.02);
    float r0 = 0.32 + BASS * 0.05;

    // noise depends only on direction and r - time, so the flames stream straight outwards
    float flow = r * 2.2 - MT * 0.35;
    float n = fbm(dir * 2.4 + vec2(flow, flow * 0.7));
    float n2 = noise(dir * 7.0 + vec2(flow * 2.3, -flow * 1.7));
    float reach = 0.06 + s * 0.5 + BASS * 0.05;
    float t = (r - r0) / reach;
    float fl = clamp(1.0 - t + (n - 0.5) * 1.6 + (n2 - 0.5) * 0.5, 0.0, 1.0);
    fl *= step(r0 - 0.01, r);

    vec3 col = PAL(0.0) * 0.06 * exp(-r * 1.2);
    col += PAL(0.05) * 0.35 * exp(-max(r - r0, 0.0) * 5.0) * (0.6 + BASS);
    col += mix(PAL(0.0), PAL(0.5), fl * fl) * pow(fl, 1.5) * 1.6;

    float g = noise(p * 38.0 + MT * 0.3) * 0.6 + noise(p * 90.0 - MT * 0.2) * 0.4;
    float limb = sqrt(max(1.0 - (r * r) / (r0 * r0), 0.0));
    vec3 sun = mix(PAL(0.0), PAL(0.5), limb) * (0.6 + 0.8 * g) * (0.8 + 1.6 * limb) + vec3(0.6) * pow(limb, 4.0) * g;
    col = mix(col, sun, smoothstep(r0 + 0.004, r0 - 0.004, r));
    return tm(col);
}
