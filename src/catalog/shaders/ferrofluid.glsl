float ferro(vec3 q) {
    const float C = 0.24;
    vec2 id = floor(q.xz / C);
    vec2 f = q.xz - (id + 0.5) * C;
    vec2 cc = (id + 0.5) * C;
    float rc = length(cc);
    float fall = exp(-rc * rc * 1.6);
    float hs = fall * (0.1 + SP(h21(id) * 0.7 + 0.02) * 0.6 + BASS * 0.2);
    float r = length(f) / (C * 0.5);
    float spike = hs * pow(max(1.0 - r, 0.0), 1.5);
    float pr = length(q.xz);
    float bulge = (0.12 + BASS * 0.22) * exp(-pr * pr * 2.0) + 0.05 * exp(-pr * pr * 0.4);
    // steep cones: divide by the slope; above the tallest spike the height alone is safe
    float g = hs * 1.5 / (C * 0.5);
    float d = (q.y - bulge - spike) / sqrt(1.0 + g * g);
    return max(d, q.y - 1.3);
}

vec3 env(vec3 d) {
    vec3 c = PAL(0.6) * 0.07 * smoothstep(-0.3, 0.6, d.y);
    // long overhead softboxes and a ring light
    float a = atan(d.z, d.x + 1e-6);
    float strip = smoothstep(0.07, 0.03, abs(fract(a / TAU * 8.0) - 0.5)) * smoothstep(0.05, 0.2, d.y) * smoothstep(0.85, 0.7, d.y);
    c += (mod1(floor(a / TAU * 8.0 + 0.5), 2.0) > 0.5 ? PAL(0.0) : PAL(0.55)) * strip * 1.6;
    c += PAL(0.45) * smoothstep(0.05, 0.0, abs(d.y - 0.02)) * 0.8;
    c += PAL(0.25) * smoothstep(0.07, 0.0, abs(d.y - 0.3)) * 0.7;
    c += vec3(1.0) * smoothstep(0.97, 0.995, d.y) * 1.2;
    return c;
}

vec3 vis(vec2 p, vec2 uv) {
    float ca = TIME * 0.06 + MOUSE.x * 1.8;
    float el = 0.55 + MOUSE.y * 0.4;
    vec3 ro = vec3(sin(ca) * cos(el), sin(el), cos(ca) * cos(el)) * 2.6;
    vec3 rd = rayDir(p, ro, vec3(0.0, 0.1, 0.0), 1.8);
    vec3 col = env(rd) * 0.4;
    float t = 0.0;
    bool hit = false;
    if (rd.y < 0.0) {
        // start just above the tallest spike
        t = max((ro.y - 1.5) / -rd.y, 0.0);
        for (int i = 0; i < 90; ++i) {
            vec3 q = ro + rd * t;
            float d = ferro(q);
            if (d < 0.0015 * t) { hit = true; break; }
            // outside the spikes and heading outward the floor only sinks: jump to its height
            t += dot(q.xz, q.xz) > 5.3 && dot(q.xz, rd.xz) > 0.0 ? d / -rd.y : d;
            if (t > 12.0) break;
        }
    }
    if (hit) {
        vec3 q = ro + rd * t;
        vec2 e = vec2(0.002, -0.002);
        vec3 n = normalize(e.xyy * ferro(q + e.xyy) + e.yyx * ferro(q + e.yyx) + e.yxy * ferro(q + e.yxy) + e.xxx * ferro(q + e.xxx));
        vec3 rf = reflect(rd, n);
        float fres = 0.08 + 0.92 * pow(1.0 - max(dot(n, -rd), 0.0), 5.0);
        vec3 er = env(rf);
        col = vec3(0.005) + er * (0.35 + fres * 1.0);
        // key light above the camera picks out the spike flanks
        col += PAL(0.1) * pow(max(dot(rf, normalize(vec3(ro.x, 1.5, ro.z))), 0.0), 12.0) * 0.8;
        // the puddle ends in a dull dark floor
        float pr = length(q.xz);
        col = mix(PAL(0.6) * 0.015 * (1.0 + er.b * 0.5), col, smoothstep(2.0, 1.6, pr + noise(q.xz * 3.0) * 0.2));
        col *= exp(-pr * 0.2);
    }
    return tm(col * 1.2);
}
