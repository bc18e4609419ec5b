vec3 vis(vec2 p, vec2 uv) {
    float ca = TIME * 0.04 + MOUSE.x * 1.8;
    float el = 0.2 + MOUSE.y * 0.9;
    vec3 ro = vec3(sin(ca) * cos(el), sin(el), -cos(ca) * cos(el)) * 4.0;
    vec3 rd = rayDir(p, ro, vec3(0.0), 1.6);
    float age = fract(TIME / 6.0 + 0.3);
    float R = 0.15 + 1.55 * (1.0 - pow(1.0 - age, 2.2));
    float fade = smoothstep(0.0, 0.06, age) * (1.0 - age * 0.7);
    float width = mix(0.45, 0.12, clamp(BASS, 0.0, 1.0)) * (0.4 + age);

    vec3 col = vec3(0.0);
    // stars behind
    vec2 sp = vec2(atan(rd.z, rd.x), asin(clamp(rd.y, -1.0, 1.0))) * 70.0;
    vec2 id = floor(sp);
    float s = h21(id);
    col += vec3(step(0.96, s) * smoothstep(0.3, 0.0, length(fract(sp) - 0.5 - (h22(id) - 0.5) * 0.4)) * (s - 0.9) * 8.0);
    col += PAL(0.8) * 0.1 * fbm(sp * 0.025) * fbm(sp * 0.05 + 4.0);

    // march only where the ray crosses the outer shell sphere
    float Rm = R + width * 1.5;
    float b = dot(ro, rd), c = dot(ro, ro) - Rm * Rm;
    float disc = b * b - c;
    if (disc > 0.0) {
        float sq = sqrt(disc);
        float t0 = max(-b - sq, 0.0), t1 = -b + sq;
        float dt = (t1 - t0) / 32.0;
        float tr = 1.0;
        vec3 acc = vec3(0.0);
        for (int i = 0; i < 32; ++i) {
            float t = t0 + (float(i) + 0.5) * dt;
            vec3 q = ro + rd * t;
            float r = length(q);
            vec3 nq = q / max(r, 1e-4);
            float n = noise3(nq * 3.0 + age * 2.0) * 0.65 + noise3(nq * 7.0 - age * 3.0) * 0.35;
            float dr = (r - R * (0.85 + n * 0.3)) / width;
            float sh = exp(-dr * dr * 2.0);
            float dens = sh * smoothstep(0.35, 0.75, n) * 1.6 * fade;
            vec3 ec = mix(mix(PAL(0.4), vec3(1.0, 0.85, 0.7), 0.35), PAL(0.0) * 0.8, smoothstep(R * 0.75, R * 1.15, r)) * (0.4 + n);
            acc += tr * ec * dens * dt * 4.0;
            tr *= exp(-dens * dt * 2.0);
        }
        col = col * tr + acc;
    }
    // core: bright flash at the start that settles to a glowing remnant
    float dc = length(cross(rd, -ro));
    float core = (0.03 + 0.5 * exp(-age * 8.0)) * (0.5 + BASS * 1.5);
    col += mix(PAL(0.25), vec3(1.0), 0.6) * core / (dc * dc * 40.0 + 0.05);
    col += PAL(0.15) * exp(-dc * 2.5) * (0.05 + BASS * 0.25);
    return tm(col);
}
