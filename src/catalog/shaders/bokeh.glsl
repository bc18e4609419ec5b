vec3 vis(vec2 p, vec2 uv) {
    vec3 col = mix(PAL(0.75) * 0.08, PAL(0.0) * 0.03, uv.y) * (1.0 - 0.3 * length(p) / ASPECT);
    for (int l = 0; l < 4; ++l) {
        float fl = float(l);
        float sc = 4.2 - fl * 0.8;
        float blur = 0.015 + fl * 0.035;
        vec2 q = (p + MOUSE * (0.08 + fl * 0.12)) * sc + vec2(fl * 3.7, 0.0);
        q.y -= MT * (0.1 + fl * 0.07);
        vec2 id = floor(q), f = fract(q) - 0.5;
        float h = h21(id + fl * 13.1);
        if (h > 0.5) continue;
        float s = SP(h21(id + 4.2 + fl) * 0.75 + 0.02);
        float r = 0.1 + 0.2 * s + 0.12 * h;
        vec2 o = (h22(id + fl * 5.3) - 0.5) * max(0.96 - 2.0 * r, 0.0);
        float d = length(f - o);
        float disc = smoothstep(r, r - blur, d);
        float rim = smoothstep(blur + 0.012, 0.0, abs(d - r + blur * 0.6 + 0.008));
        vec3 c = mix(PAL(h * 1.8 + fl * 0.15), vec3(1.0), 0.15 * s);
        float br = (0.12 + 0.75 * s) * (1.0 - fl * 0.12);
        col += c * (disc * (0.3 + 0.25 * d / r) + rim * 0.45) * br;
        col += c * 0.08 * br * exp(-d * 8.0) * smoothstep(0.5, 0.3, d);
    }
    return tm(col * 1.3);
}
