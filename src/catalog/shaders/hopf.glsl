vec3 vis(vec2 p, vec2 uv) {
    mat2 r1 = rot(0.35 * sin(MT * 0.21)), r2 = rot(MT * 0.15);
    mat2 r3 = rot(MT * 0.2 + MOUSE.x * 1.5), r4 = rot(0.9 + MOUSE.y * 1.2);
    vec3 col = PAL(0.75) * 0.03 * (1.2 - length(p) * 0.5);
    for (int f = 0; f < 18; ++f) {
        float ff = float(f);
        float eta = f < 9 ? 0.3 : 0.62;
        float phi = float(f % 9) / 9.0 * TAU + (f < 9 ? 0.0 : 0.35);
        float s = SP(ff / 18.0 * 0.85 + 0.02);
        float rad = 0.009 + s * 0.02;
        vec3 c = PAL(ff / 18.0 + TIME * 0.02);
        vec2 prevP = vec2(0.0);
        for (int i = 0; i <= 16; ++i) {
            float t = (float(i) + fract(MT * 0.3)) / 16.0 * TAU;
            vec4 q = vec4(cos(eta) * vec2(cos(t + phi), sin(t + phi)), sin(eta) * vec2(cos(t), sin(t)));
            q.xw = r1 * q.xw;
            // Stereographic projection from the pole w = 1, kept finite near it.
            vec3 v = q.xyz / max(1.0 - q.w, 0.08);
            v /= 1.0 + 0.08 * length(v);
            v.xy = r2 * v.xy;
            v.xz = r3 * v.xz;
            v.yz = r4 * v.yz;
            float k = 3.0 / (7.0 - v.z);
            vec2 P = v.xy * k * 1.4;
            float d = length(p - P);
            // A faint thread joins the dots so each fibre reads as one circle.
            if (i > 0) col += c * 0.09 * smoothstep(0.006, 0.0, sdSeg(p, prevP, P));
            prevP = P;
            if (i == 16) break;
            float r = rad * k * 4.0;
            col += c * (smoothstep(r, r * 0.4, d) * 0.9 + 0.12 * r * r / (d * d + r * r)) * smoothstep(0.5, 0.0, d);
        }
    }
    return tm(col * 1.2);
}
