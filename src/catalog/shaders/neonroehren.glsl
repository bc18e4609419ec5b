vec2 path(float z) {
    return vec2(sin(z * 0.21) * 2.2 + sin(z * 0.53) * 0.6, cos(z * 0.17) * 1.4);
}

vec3 vis(vec2 p, vec2 uv) {
    float z0 = MT * 4.0;
    vec3 ro = vec3(path(z0), z0);
    vec3 ta = vec3(path(z0 + 4.0) + MOUSE * vec2(1.6, 1.2), z0 + 4.0);
    vec3 rd = rayDir(p, ro, ta, 1.3);
    vec3 col = PAL(0.7) * 0.03 * (1.0 + p.y * 0.5);
    const float GAP = 1.5;
    const float R = 1.1;
    float k0 = floor(z0 / GAP) + 1.0;
    for (int i = 0; i < 28; ++i) {
        float k = k0 + float(i);
        float zk = k * GAP;
        float t = (zk - ro.z) / max(rd.z, 1e-3);
        vec3 q = ro + rd * t;
        float r = length(q.xy - path(zk));
        float d = abs(r - R);
        float b = SP(h11(k * 0.173) * 0.8 + 0.02);
        float e = 0.45 + b * 1.8;
        float w = 0.03 + 0.0015 * t;
        vec3 c = mix(PAL(h11(k * 0.71)), vec3(1.0), smoothstep(0.6, 1.0, b) * 0.2);
        float fog = exp(-t * 0.07) * smoothstep(0.0, 1.0, t);
        float core = smoothstep(w, w * 0.3, d);
        col += fog * e * (c * (w / (d + w) * 0.25 + exp(-d * 3.0) * 0.06 + core * 0.45) + vec3(core * core * 0.12));
    }
    return tm(col * 1.1);
}
