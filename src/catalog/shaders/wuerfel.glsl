vec3 vis(vec2 p, vec2 uv) {
    vec3 ro = vec3(MOUSE * 0.6 + vec2(sin(MT * 0.2), cos(MT * 0.17)) * 0.15, MT * 2.2);
    vec3 rd = normalize(vec3(p, 1.6));
    rd.xy = rot(TIME * 0.05) * rd.xy;
    vec3 ird = 1.0 / max(abs(rd), 1e-4);
    vec3 col = PAL(0.6) * 0.02;
    float t = 0.0;
    for (int i = 0; i < 48; ++i) {
        vec3 pos = ro + rd * t;
        vec3 id = floor(pos * 0.5);
        vec3 q0 = pos - id * 2.0 - 1.0;
        float h = h31(id + 0.5);
        float s = SP(h * 0.85 + 0.03);
        float sz = 0.12 + s * 0.26;
        vec3 tb = (1.0 - q0 * sign(rd)) * ird;
        float te = min(tb.x, min(tb.y, tb.z));
        // closest approach to the cube's centre inside this cell
        float dc = length(q0 + rd * clamp(-dot(q0, rd), 0.0, te));
        vec3 c = PAL(h + TIME * 0.02);
        float fog = exp(-t * 0.13);
        float d = 1e4;
        if (dc < sz * 1.75 + 0.03) {
            vec3 q = q0;
            q.xy = rot(MT * 0.7 + h * 6.0) * q.xy;
            q.yz = rot(MT * 0.5 + h * 4.0) * q.yz;
            d = sdBox(q, vec3(sz)) - 0.02;
            if (d < 0.002 + t * 0.0005) {
                vec3 a = abs(q) / sz;
                float mx = max(a.x, max(a.y, a.z));
                float mid = a.x + a.y + a.z - mx - min(a.x, min(a.y, a.z));
                float face = a.x == mx ? 0.55 : a.y == mx ? 1.0 : 0.75;
                float edge = smoothstep(0.82, 0.97, mid);
                col += c * ((0.14 + s * 0.5) * face + edge * (0.8 + s * 1.4)) * fog;
                break;
            }
        }
        // glow once per cell, from how near the ray passes the cube
        if (d >= te) col += c * (0.003 + s * 0.012) * exp(-max(dc - sz, 0.0) * 7.0) * fog * 4.0;
        // a cell whose cube the ray misses is crossed in one step
        t += (d < te ? d : te) + 0.01;
        if (t > 20.0) break;
    }
    return tm(col * 1.3);
}
