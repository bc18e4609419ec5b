vec3 vis(vec2 p, vec2 uv) {
    vec2 g = p * 3.2;
    vec2 ip = floor(g), fp = fract(g);
    vec2 mo = vec2(0.0), mr = vec2(0.0);
    float md = 8.0;
    for (int j = -1; j <= 1; ++j)
    for (int i = -1; i <= 1; ++i) {
        vec2 o = vec2(i, j);
        vec2 h = h22(ip + o);
        vec2 r = o + 0.5 + 0.4 * sin(MT * 0.5 + TAU * h) - fp;
        float d = dot(r, r);
        if (d < md) { md = d; mr = r; mo = o; }
    }
    float bd = 8.0;
    for (int j = -2; j <= 2; ++j)
    for (int i = -2; i <= 2; ++i) {
        vec2 o = mo + vec2(i, j);
        vec2 h = h22(ip + o);
        vec2 r = o + 0.5 + 0.4 * sin(MT * 0.5 + TAU * h) - fp;
        if (dot(mr - r, mr - r) > 1e-5) bd = min(bd, dot(0.5 * (mr + r), normalize(r - mr)));
    }
    vec2 cid = ip + mo;
    float hc = h21(cid + 0.37);
    float s = SP(h21(cid + 9.1) * 0.8 + 0.02);
    vec3 cc = PAL(hc * 0.8 + 0.1);
    vec3 col = cc * (0.04 + 0.75 * s) * (0.35 + 0.65 * smoothstep(0.0, 0.35, bd)) * (1.0 - 0.6 * sqrt(md));
    col += cc * 0.5 * s * exp(-md * 14.0);
    vec3 bc = mix(PAL(hc + 0.5), vec3(1.0), 0.35);
    col += bc * (smoothstep(0.03, 0.0, bd) * (0.35 + 0.8 * LVL) + exp(-bd * 18.0) * (0.12 + 0.6 * LVL));
    return tm(col * 1.2);
}
