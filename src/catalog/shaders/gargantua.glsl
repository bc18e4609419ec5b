vec3 vis(vec2 p, vec2 uv) {
    float ca = TIME * 0.03 + MOUSE.x * 1.5;
    float el = 0.12 + MOUSE.y * 0.35;
    vec3 ro = vec3(sin(ca) * cos(el), sin(el), -cos(ca) * cos(el)) * 12.5;
    vec3 rd = rayDir(p, ro, vec3(0.0), 1.9);
    vec3 pos = ro, vel = rd;
    vec3 col = vec3(0.0);
    float trans = 1.0;
    // photon bending ~ 1.5 h^2 / r^5 with h its angular momentum (horizon radius 1)
    vec3 hv = cross(pos, vel);
    float h2 = dot(hv, hv);
    bool captured = false;
    for (int i = 0; i < 150; ++i) {
        float r = length(pos);
        if (r < 1.0) { captured = true; break; }
        if (r > 24.0 && dot(pos, vel) > 0.0) break;
        float dt = clamp(0.12 * r, 0.04, 1.2);
        vec3 np = pos + vel * dt;
        vel += -1.5 * h2 * pos / (r * r * r * r * r) * dt;
        vel = normalize(vel);
        if (pos.y * np.y < 0.0) {
            vec3 hp = mix(pos, np, pos.y / (pos.y - np.y));
            float rr = length(hp.xz);
            if (rr > 2.6 && rr < 9.0) {
                float ang = atan(hp.z, hp.x);
                float sw = ang + MT * 1.2 / pow(rr, 1.5) * 3.0;
                float n = fbm(vec2(rr * 2.2, sw * 3.0 / TAU * 6.0));
                float rad = smoothstep(2.6, 3.2, rr) * smoothstep(9.0, 5.0, rr);
                // orbiting gas moving towards the viewer gets brighter
                vec3 ov = normalize(vec3(-hp.z, 0.0, hp.x));
                float dop = pow(clamp(1.0 + 0.5 * dot(ov, -vel), 0.3, 2.0), 2.0);
                float dens = rad * (0.35 + n * n * 1.6);
                vec3 dc = mix(PAL(0.0), PAL(0.33), smoothstep(8.0, 2.8, rr)) * (1.0 + smoothstep(4.0, 2.7, rr) * 1.5);
                col += trans * dc * dens * dop * (0.45 + BASS * 1.5);
                trans *= 1.0 - clamp(dens * 0.8, 0.0, 0.9);
                if (trans < 0.03) break;
            }
        }
        pos = np;
    }
    if (!captured) {
        vec3 d = normalize(vel);
        vec2 sp = vec2(atan(d.z, d.x), asin(clamp(d.y, -1.0, 1.0))) * 60.0;
        vec2 id = floor(sp), f = fract(sp) - 0.5;
        float s = h21(id);
        float st = step(0.93, s) * smoothstep(0.25, 0.0, length(f - (h22(id + 2.0) - 0.5) * 0.5)) * (s - 0.9) * 10.0;
        vec3 bg = vec3(st) + PAL(0.8) * 0.05 * fbm(sp * 0.03);
        col += trans * bg;
    }
    return tm(col);
}
