float cloud(vec3 q, int oct) {
    float y = q.y;
    q = q * 0.5 + vec3(MT * 0.04, 0.0, MT * 0.015);
    float n = 0.0, a = 0.5;
    for (int i = 0; i < 4; ++i) {
        if (i >= oct) break;
        n += a * noise3(q);
        q = q * 2.03 + vec3(1.7, -0.6, 3.1);
        a *= 0.5;
    }
    // a sea of cloud whose coverage thins with height, so the tops billow into towers
    return clamp((n - 0.48 - (y + 0.9) * 0.22) * 5.0, 0.0, 1.0) * smoothstep(-3.2, -2.2, y);
}

vec3 vis(vec2 p, vec2 uv) {
    float roll = sin(MT * 0.11) * 0.2;
    vec2 pp = rot(roll) * p;
    vec3 ro = vec3(sin(MT * 0.07) * 3.0, 0.25 + sin(MT * 0.09) * 0.35, MT * 0.8);
    vec3 ta = ro + vec3(MOUSE.x * 1.2 + sin(MT * 0.05) * 0.3, MOUSE.y * 0.8 - 0.3, 1.5);
    vec3 rd = rayDir(pp, ro, ta, 1.3);
    vec3 sd = normalize(vec3(-0.35, 0.13, 1.0));
    float sun = max(dot(rd, sd), 0.0);
    // sunset sky: deep violet zenith, hot glow on the horizon under a low sun
    float h = rd.y;
    vec3 sky = mix(PAL(0.12) * 0.5, PAL(0.8) * 0.1, smoothstep(-0.02, 0.3, h));
    sky = mix(sky, PAL(0.75) * 0.02, smoothstep(0.25, 0.7, h));
    sky += PAL(0.25) * (pow(sun, 6.0) * 0.6 + pow(sun, 60.0) * 0.8) + PAL(0.45) * smoothstep(0.9985, 0.9992, sun) * 3.0;

    vec3 acc = vec3(0.0);
    float alpha = 0.0;
    float t = 0.1 + h21(p * 40.0 + fract(TIME)) * 0.1;
    vec3 flash = PAL(0.0) * BEAT * 1.2;
    vec3 fogc = mix(PAL(0.85) * 0.12, PAL(0.1) * 0.4, smoothstep(-0.15, 0.05, rd.y)) + PAL(0.25) * pow(sun, 4.0) * 0.5;
    for (int i = 0; i < 40; ++i) {
        vec3 q = ro + rd * t;
        float dt = 0.12 + t * 0.06;
        if (q.y > 0.9 && rd.y > 0.0) break;
        float d = cloud(q, 4);
        if (d > 0.01) {
            // self-shadowing: one coarse sample towards the sun
            float sh = exp(-cloud(q + sd * 0.3, 2) * 7.0);
            float up = smoothstep(-2.2, 0.4, q.y);
            vec3 lit = PAL(0.8) * (0.06 + 0.14 * up);
            lit += mix(PAL(0.05), PAL(0.3), sh) * sh * (0.35 + 2.4 * pow(sun, 4.0)) * up * up;
            lit += flash * (0.3 + sh) * up;
            lit = mix(lit, fogc, 1.0 - exp(-t * 0.08));
            float a = (1.0 - exp(-d * dt * 4.0)) * (1.0 - alpha);
            acc += lit * a;
            alpha += a;
            if (alpha > 0.97) break;
        }
        t += dt;
    }
    vec3 col = acc + sky * (1.0 - alpha);
    col += PAL(0.3) * pow(sun, 12.0) * 0.3 * (1.0 - alpha * 0.6);
    return tm(col * 1.1);
}
