vec3 vis(vec2 p, vec2 uv) {
    float r = length(p);
    float a = atan(p.x, p.y + 1e-6);
    const float e = 0.004;
    vec3 col = PAL(0.6) * 0.05 * exp(-r * 1.4);

    // inner ring: bass to mid, turning one way
    float x1 = abs(mod1(a + MT * 0.25 + PI, TAU) - PI) / PI;
    float k1 = x1 * 0.4 + 0.01;
    float s1 = SP(k1);
    float R1 = 0.26 + s1 * 0.2;
    float g1 = (SP(k1 + e) - SP(k1 - e)) / (2.0 * e) * 0.4 * 0.2 / (PI * R1);
    float d1 = abs(r - R1) / sqrt(1.0 + g1 * g1);

    // outer ring: mid to treble, turning the other way
    float x2 = abs(mod1(a - MT * 0.18 + PI, TAU) - PI) / PI;
    float k2 = 0.4 + x2 * 0.55;
    float s2 = SP(k2);
    float R2 = 0.66 + s2 * 0.26;
    float g2 = (SP(k2 + e) - SP(k2 - e)) / (2.0 * e) * 0.55 * 0.26 / (PI * R2);
    float d2 = abs(r - R2) / sqrt(1.0 + g2 * g2);

    vec3 c1 = PAL(0.05 + x1 * 0.25), c2 = PAL(0.5 + x2 * 0.3);
    col += mix(c1, vec3(1.0), 0.3) * smoothstep(0.006, 0.0, d1) * 1.3 + c1 * (0.015 / (d1 + 0.015) * 0.4 + exp(-d1 * 40.0) * 0.5);
    col += mix(c2, vec3(1.0), 0.3) * smoothstep(0.006, 0.0, d2) * 1.3 + c2 * (0.015 / (d2 + 0.015) * 0.4 + exp(-d2 * 40.0) * 0.5);
    col += PAL(0.1) * 0.12 * smoothstep(0.45, 0.0, r) * (0.4 + BASS);

    // tick scale between the rings
    float ta = a / TAU * 96.0;
    float tf = abs(fract(ta) - 0.5) * TAU / 96.0 * r;
    float tlen = mod1(floor(ta), 4.0) < 0.5 ? 0.04 : 0.02;
    float band = smoothstep(0.003, 0.0, abs(r - 0.55) - tlen);
    col += mix(PAL(0.3), vec3(1.0), 0.3) * band * smoothstep(0.0025, 0.0, tf) * (0.12 + LVL * 1.3);
    col += PAL(0.3) * 0.3 * smoothstep(0.002, 0.0, abs(r - 0.55)) * (0.2 + LVL);
    return tm(col);
}
