float cloud(vec3 q, int oct) {
    float y = q.y;
    q = q * 0.55 + vec3(MT * 0.05, 0.0, MT * 0.02);
    float n = 0.0, a = 0.5;
    for (int i = 0; i < 4; ++i) {
        if (i >= oct) break;
        n += a * noise3(q);
        q = q * 2.02 + vec3(1.7, -0.6, 3.1);
        a *= 0.5;
    }
    // a layer around y = -1 that thins towards its edges
    float layer = 1.0 - abs(y + 1.0) / 1.6;
    return clamp((n - 0.6 + layer * 0.16) * 6.0, 0.0, 1.0) * smoothstep(0.0, 0.3, layer);
}

vec3 vis(vec2 p, vec2 uv) {
    float roll = sin(MT * 0.11) * 0.25;
    vec2 pp = rot(roll) * p;
    vec3 ro = vec3(sin(MT * 0.07) * 3.0, 0.15 + sin(MT * 0.09) * 0.3, MT * 0.9);
    vec3 ta = ro + vec3(MOUSE.x * 1.2 + sin(MT * 0.05) * 0.3, MOUSE.y * 0.8 - 0.25, 1.5);
    vec3 rd = rayDir(pp, ro, ta, 1.4);
    vec3 sd = normalize(vec3(-0.4, 0.35, 1.0));
    float sun = max(dot(rd, sd), 0.0);
    vec3 bg = mix(PAL(0.1) * 0.5, PAL(0.85) * 0.1, smoothstep(-0.05, 0.45, rd.y));
    bg = mix(bg, PAL(0.95) * 0.15, smoothstep(0.0, -0.5, rd.y));
    bg += PAL(0.4) * (pow(sun, 8.0) * 0.5 + pow(sun, 300.0) * 2.0);

    vec3 acc = vec3(0.0);
    float alpha = 0.0;
    float t = 0.2 + h21(p * 40.0 + fract(TIME)) * 0.1;
    vec3 flash = PAL(0.0) * BEAT * 0.7;
    for (int i = 0; i < 40; ++i) {
        vec3 q = ro + rd * t;
        float dt = 0.15 + t * 0.05;
        float d = cloud(q, 4);
        if (d > 0.01) {
            // self-shadowing: one coarse sample towards the sun
            float sh = exp(-cloud(q + sd * 0.45, 2) * 5.0);
            float up = smoothstep(-1.8, 0.6, q.y);
            vec3 lit = mix(PAL(0.8) * 0.05, PAL(0.3) * 1.0, sh * (0.3 + 0.7 * up)) + PAL(0.05) * 0.12 * up;
            lit += flash * sh;
            lit = mix(lit, bg, 1.0 - exp(-t * 0.045));
            float a = (1.0 - exp(-d * dt * 3.5)) * (1.0 - alpha);
            acc += lit * a;
            alpha += a;
            if (alpha > 0.97) break;
        }
        t += dt;
    }
    vec3 col = acc + bg * (1.0 - alpha);
    col += PAL(0.4) * pow(sun, 6.0) * 0.25 * (1.0 - alpha * 0.5);
    return tm(col * 1.2);
}
