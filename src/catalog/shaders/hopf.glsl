vec3 vis(vec2 p, vec2 uv) {
    mat2 r1 = rot(0.2 * sin(MT * 0.17)), r2 = rot(MT * 0.11);
    mat2 r3 = rot(MT * 0.08 + MOUSE.x * 1.5), r4 = rot(1.1 + MOUSE.y * 1.2);
    const float SC = 0.5;
    vec3 col = PAL(0.75) * 0.05 * exp(-length(p) * 1.6);
    float flow = fract(MT * 0.2);
    for (int f = 0; f < 18; ++f) {
        float ff = float(f);
        float ring = floor(ff / 6.0);
        // three nested tori of six linked circles; eta < 0.9 keeps every fibre clear of the pole
        float eta = 0.4 + ring * 0.22;
        float phi = mod1(ff, 6.0) / 6.0 * TAU + ring * 0.52;
        float s = SP(ff / 18.0 * 0.85 + 0.02);
        vec3 c = PAL(ring * 0.3 + mod1(ff, 6.0) * 0.04 + TIME * 0.015);
        // The projected fibre is an exact circle: rebuild it from three of its points.
        vec3 A, B, C3;
        vec2 cp = vec2(cos(phi), sin(phi)), ce = vec2(cos(eta), sin(eta));
        vec2 ct = vec2(1.0, 0.0);
        for (int j = 0; j < 3; ++j) {
            vec4 q = vec4(ce.x * vec2(ct.x * cp.x - ct.y * cp.y, ct.y * cp.x + ct.x * cp.y), ce.y * ct);
            ct = vec2(-0.5 * ct.x - 0.8660254 * ct.y, 0.8660254 * ct.x - 0.5 * ct.y);
            q.xw = r1 * q.xw;
            vec3 v = q.xyz / (1.0 - q.w);
            v.xy = r2 * v.xy;
            v.xz = r3 * v.xz;
            v.yz = r4 * v.yz;
            if (j == 0) A = v; else if (j == 1) B = v; else C3 = v;
        }
        vec3 a = A - C3, b = B - C3, n = cross(a, b);
        float nn = max(dot(n, n), 1e-6);
        vec3 cen = C3 + cross(dot(a, a) * b - dot(b, b) * a, n) / (2.0 * nn);
        float R = length(A - cen);
        vec3 nz = n * inversesqrt(nn);
        // the projected circle is an ellipse inside this annulus
        float dcen = length(p - cen.xy * SC);
        if (dcen > R * SC + 0.12 || dcen < R * SC * abs(nz.z) - 0.12) continue;
        vec3 U = (A - cen) / max(R, 1e-4), V = cross(nz, U);
        vec2 P0 = (cen.xy + R * U.xy) * SC;
        float z0 = cen.z + R * U.z;
        // step around the circle by rotation instead of sin/cos per point
        const vec2 ST = vec2(0.96592583, 0.25881905);
        vec2 cs = vec2(1.0, 0.0);
        for (int j = 1; j <= 24; ++j) {
            cs = vec2(cs.x * ST.x - cs.y * ST.y, cs.x * ST.y + cs.y * ST.x);
            vec3 X = cen + R * (U * cs.x + V * cs.y);
            vec2 P = X.xy * SC;
            float fog = smoothstep(-2.0, 1.5, (X.z + z0) * 0.5);
            float d = sdSeg(p, P0, P);
            float w = 0.0015 + 0.002 * fog;
            col += c * w / (d + w) * smoothstep(0.08, 0.0, d) * (0.12 + 0.45 * fog);
            P0 = P;
            z0 = X.z;
        }
        const vec2 SD = vec2(0.92387953, 0.38268343);
        cs = vec2(cos(flow * TAU / 16.0), sin(flow * TAU / 16.0));
        for (int i = 0; i < 16; ++i) {
            vec3 X = cen + R * (U * cs.x + V * cs.y);
            cs = vec2(cs.x * SD.x - cs.y * SD.y, cs.x * SD.y + cs.y * SD.x);
            float fog = smoothstep(-2.0, 1.5, X.z);
            float d = length(p - X.xy * SC);
            float r = (0.008 + s * 0.02) * (0.6 + 0.6 * fog);
            col += mix(c, vec3(1.0), 0.35 * fog) * (smoothstep(r, r * 0.3, d) * (0.3 + 0.9 * fog) + 0.25 * r * r / (d * d + r * r)) * smoothstep(0.25, 0.0, d);
        }
    }
    return tm(col * 1.3);
}
