float terrain(vec2 x, int oct) {
    float h = 0.0, a = 1.0;
    vec2 q = x * 0.16;
    for (int i = 0; i < 5; ++i) {
        if (i >= oct) break;
        float n = 1.0 - abs(noise(q) * 2.0 - 1.0);
        h += a * n * n;
        q = mat2(1.6, 1.2, -1.2, 1.6) * q;
        a *= 0.42;
    }
    // a channel along the flight path keeps the valley open for the lava river
    float ch = smoothstep(0.0, 3.5, abs(x.x - sin(x.y * 0.07) * 4.0));
    return h * 2.0 * (0.2 + 0.8 * ch) - 0.45;
}

vec3 vis(vec2 p, vec2 uv) {
    float z = MT * 3.0;
    float px = sin(z * 0.07) * 4.0;
    vec3 ro = vec3(px + MOUSE.x * 1.5, 1.9 + MOUSE.y * 0.8, z);
    vec3 ta = vec3(sin((z + 6.0) * 0.07) * 4.0 + MOUSE.x * 3.0, 1.0 + MOUSE.y * 1.2, z + 6.0);
    vec3 rd = rayDir(p, ro, ta, 1.5);
    vec3 sky = mix(PAL(0.0) * 0.22, vec3(0.02, 0.01, 0.015), smoothstep(-0.05, 0.5, rd.y));
    sky += PAL(0.1) * 0.15 * fbm(vec2(rd.x * 3.0 + MT * 0.05, rd.y * 6.0)) * smoothstep(0.6, 0.0, rd.y);
    vec3 col = sky;
    float t = 0.2;
    bool hit = false;
    for (int i = 0; i < 80; ++i) {
        vec3 q = ro + rd * t;
        float d = q.y - terrain(q.xz, 3);
        if (d < 0.003 * t) { hit = true; break; }
        t += d * 0.55;
        if (t > 45.0) break;
    }
    if (hit) {
        vec3 q = ro + rd * t;
        float h = terrain(q.xz, 5);
        vec2 e = vec2(0.03, 0.0);
        vec3 n = normalize(vec3(h - terrain(q.xz + e.xy, 5), e.x, h - terrain(q.xz + e.yx, 5)));
        vec3 ld = normalize(vec3(0.3, 0.6, 0.8));
        vec3 rock = vec3(0.05, 0.04, 0.04) * (0.4 + 0.6 * max(dot(n, ld), 0.0));
        // lava pools in the low parts, crusted, glowing up at the slopes
        float low = smoothstep(0.25, -0.05, h);
        float flow = fbm(q.xz * 1.8 + vec2(0.0, TIME * 0.4));
        float crust = smoothstep(0.45, 0.7, flow);
        vec3 lava = mix(PAL(0.0) * 0.8, mix(PAL(0.25), vec3(1.0, 0.9, 0.6), 0.3), smoothstep(0.0, -0.4, h) * (1.0 - crust));
        lava *= (0.5 + BASS * 1.3) * (1.0 - crust * 0.8);
        col = rock + lava * low;
        col += PAL(0.0) * 0.3 * (1.0 - low) * smoothstep(1.0, 0.0, h) * (0.35 + BASS) * (0.5 + 0.5 * n.y);
        // cracks: thin glowing seams in the rock
        float cr = abs(noise(q.xz * 1.7) - 0.5) + abs(noise(q.xz * 5.0) - 0.5) * 0.3;
        col += PAL(0.15) * smoothstep(0.02 + MID * 0.015, 0.0, cr) * (0.1 + MID * 1.2) * (1.0 - low);
        col = mix(col, sky, smoothstep(15.0, 45.0, t));
    }
    // embers rising through the view
    for (int i = 0; i < 3; ++i) {
        float fi = float(i);
        vec2 g = (p + vec2(MT * 0.05 * (fi + 1.0), -TIME * (0.12 + fi * 0.06))) * (7.0 + fi * 5.0);
        vec2 id = floor(g);
        vec2 f = fract(g) - 0.5 - (h22(id + fi * 13.0) - 0.5) * 0.7;
        float s = h21(id + fi * 7.0);
        float fl = 0.6 + 0.4 * sin(TIME * 6.0 + s * 40.0);
        col += mix(PAL(0.25), vec3(1.0, 0.9, 0.6), 0.3) * step(0.8, s) * smoothstep(0.09, 0.0, length(f)) * fl * (0.35 + BEAT * 1.5) / (1.0 + fi);
    }
    return tm(col * 1.1);
}
