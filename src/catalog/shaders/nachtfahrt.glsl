float sdRect(vec2 p, vec2 b) {
    vec2 d = abs(p) - b;
    return length(max(d, 0.0)) + min(max(d.x, d.y), 0.0);
}

// Trapezoid with bottom half-width r1, top half-width r2, half-height he.
float sdTrap(vec2 p, float r1, float r2, float he) {
    vec2 k1 = vec2(r2, he), k2 = vec2(r2 - r1, 2.0 * he);
    p.x = abs(p.x);
    vec2 ca = vec2(p.x - min(p.x, p.y < 0.0 ? r1 : r2), abs(p.y) - he);
    vec2 cb = p - k1 + k2 * clamp(dot(k1 - p, k2) / dot(k2, k2), 0.0, 1.0);
    float s = (cb.x < 0.0 && ca.y < 0.0) ? -1.0 : 1.0;
    return s * sqrt(min(dot(ca, ca), dot(cb, cb)));
}

// A drooping frond from the origin along +x.
float leaf(vec2 q, float a) {
    q = rot(-a) * q;
    float t = clamp(q.x / 0.5, 0.0, 1.0);
    float y = q.y + 0.5 * q.x * q.x;
    return max(abs(y) - 0.045 * sin(PI * t) - 0.004, abs(q.x - 0.25) - 0.25);
}

// Palm silhouette, base at the origin, about one unit high.
float palm(vec2 q) {
    float bend = 0.12 * q.y * q.y;
    float d = max(abs(q.x - bend) - mix(0.035, 0.018, clamp(q.y, 0.0, 1.0)), abs(q.y - 0.5) - 0.5);
    vec2 top = q - vec2(0.12, 1.0);
    for (int i = 0; i < 6; ++i) {
        float a = float(i) / 6.0 * TAU + 0.3;
        vec2 t = top;
        if (cos(a) < 0.0) { t.x = -t.x; a = PI - a; }
        d = min(d, leaf(t, clamp(a, -0.6, 1.2) * 0.8));
    }
    return d;
}

vec3 vis(vec2 p, vec2 uv) {
    const float hor = 0.02;
    float ax = abs(p.x) / ASPECT;
    vec3 col = mix(PAL(0.75) * 0.03, PAL(0.25) * 0.25, smoothstep(0.9, hor, p.y));

    vec2 g = p * 60.0;
    float st = h21(floor(g));
    col += vec3(0.8, 0.85, 1.0) * step(0.985, st) * smoothstep(0.3, 0.0, length(fract(g) - 0.5))
         * (0.6 + 0.4 * sin(TIME * 3.0 + st * 80.0)) * smoothstep(hor + 0.2, 0.8, p.y);

    vec2 d = p - vec2(0.0, 0.33);
    float R = 0.3 + LVL * 0.08;
    float t = clamp((d.y + R) / (2.0 * R), 0.0, 1.0);
    float cut = step(0.0, d.y) + step(0.45 * (1.0 - t), fract(d.y * 16.0 + TIME * 0.3));
    vec3 sun = mix(PAL(0.0), mix(PAL(0.5), vec3(1.0, 0.95, 0.7), 0.6), smoothstep(0.0, 1.0, t));
    col += sun * smoothstep(R, R - 0.006, length(d)) * min(cut, 1.0);
    col += PAL(0.0) * 0.2 * exp(-3.0 * max(length(d) - R, 0.0));

    if (p.y > hor) {
        float s = SP(ax * 0.8 + 0.03);
        float m = (fbm(vec2(p.x * 3.0 + 5.0, 1.7)) - 0.3) * (0.15 + s * 0.5) + 0.01;
        m *= smoothstep(0.05, 0.6, ax);
        float y = p.y - hor;
        if (y < m) col = PAL(0.75) * 0.04 + PAL(0.25) * 0.1 * (1.0 - y / max(m, 1e-3));
        col += PAL(0.5) * 0.8 * exp(-150.0 * abs(m - y)) * (0.3 + s) * step(0.001, m);
    } else {
        float dz = hor - p.y;
        float z = 0.3 / max(dz, 1e-3);
        float xw = p.x * z;
        float fw = fwidth(xw) + 1e-4;
        float zw = z + MT * 2.5;
        float fog = exp(-z * 0.2);
        float road = step(abs(xw), 0.36);
        vec2 gw = abs(fract(vec2(xw * 3.0, zw * 0.6)) - 0.5) / (fwidth(vec2(xw * 3.0, zw * 0.6)) + 1e-4);
        float grid = 1.0 - min(min(gw.x, gw.y) * 0.6, 1.0);
        col = PAL(0.25) * 0.04 + PAL(0.75) * 0.06 * (1.0 - fog);
        col += PAL(0.25) * grid * (0.25 + BASS * 0.9) * fog * (1.0 - road);
        col = mix(col, vec3(0.015, 0.012, 0.03), road);
        float edge = smoothstep(2.0 * fw, 0.0, abs(abs(xw) - 0.34) - 0.008);
        float dash = smoothstep(2.0 * fw, 0.0, abs(xw) - 0.005) * step(0.5, fract(zw * 0.35));
        col += PAL(0.5) * (edge * (0.6 + BASS * 0.8) + dash * 0.7) * fog;
        col += PAL(0.0) * 0.25 * exp(-dz * 30.0);
    }

    // Palms, far to near so nearer ones cover farther ones.
    float ph = fract(MT * 0.45);
    for (int i = 5; i >= 0; --i) {
        float z = 0.45 + (float(i) + 1.0 - ph) * 1.3;
        float k = 1.0 / z;
        float side = p.x < 0.0 ? -1.0 : 1.0;
        vec2 base = vec2(side * 0.62 * k, hor - 0.3 * k);
        float sz = 0.42 * k;
        vec2 q = (p - base) / sz;
        q.x *= side;
        if (abs(q.x) > 0.8 || q.y < -0.05 || q.y > 1.5) continue;
        float dp = palm(q) * sz;
        float fade = smoothstep(0.0, 0.3, float(i) + 1.0 - ph) * exp(-z * 0.05);
        col = mix(col, vec3(0.01, 0.0, 0.02), smoothstep(0.003, 0.0, dp) * fade);
        col += PAL(0.0) * 0.6 * exp(-abs(dp) * 250.0) * fade;
    }

    // Car from behind, following the mouse, dipping on the beat.
    vec2 c = p - vec2(clamp(MOUSE.x, -0.8, 0.8) * 0.5, -0.7 - BEAT * 0.02);
    if (abs(c.x) < 0.6 && abs(c.y) < 0.4) {
        float body = sdRect(c, vec2(0.3, 0.065)) - 0.02;
        float cabin = sdTrap(c - vec2(0.0, 0.13), 0.26, 0.18, 0.06) - 0.01;
        float wheels = sdRect(vec2(abs(c.x) - 0.22, c.y + 0.09), vec2(0.05, 0.04));
        float car = min(min(body, cabin), wheels);
        col = mix(col, vec3(0.02, 0.015, 0.04), smoothstep(0.004, 0.0, car));
        col += PAL(0.5) * 0.5 * exp(-abs(car) * 200.0);
        col += PAL(0.3) * 0.15 * smoothstep(0.01, 0.0, cabin + 0.025);
        float tl = sdRect(vec2(abs(c.x) - 0.21, c.y - 0.01), vec2(0.07, 0.015));
        float li = 0.5 + BASS * 1.2 + BEAT * 1.5;
        vec3 red = vec3(1.0, 0.1, 0.2);
        col += red * li * (smoothstep(0.004, 0.0, tl) + 0.25 * exp(-tl * 25.0) * step(0.0, tl));
        col += red * 0.1 * li * exp(-abs(c.y + 0.25) * 8.0) * smoothstep(0.35, 0.0, abs(c.x));
    }
    return col;
}
