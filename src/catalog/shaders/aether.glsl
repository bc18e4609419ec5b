float field(vec3 q) {
    // twist around the flight axis grows with depth and music time
    q.xy = rot(q.z * 0.25 + MT * 0.1) * q.xy;
    return sin(q.x) * cos(q.y) + sin(q.y) * cos(q.z) + sin(q.z + MT * 0.3) * cos(q.x);
}

vec3 vis(vec2 p, vec2 uv) {
    vec3 ro = vec3(0.0, 0.0, MT * 0.8);
    vec3 ta = ro + vec3(MOUSE.x * 1.5 + sin(MT * 0.07) * 0.4, MOUSE.y * 1.2 + cos(MT * 0.05) * 0.3, 2.0);
    vec3 rd = rayDir(p, ro, ta, 1.3);
    float sharp = 10.0 + BASS * 14.0;
    vec3 col = vec3(0.0);
    float t = 0.3 + h21(p * 50.0 + fract(TIME)) * 0.1;
    for (int i = 0; i < 36; ++i) {
        vec3 q = ro + rd * t;
        float f = abs(field(q));
        float g = exp(-f * sharp);
        col += PAL(t * 0.11 + q.z * 0.03) * g * exp(-t * 0.15) * 0.15;
        // step a little larger away from the zero set
        t += 0.12 + f * 0.25;
    }
    col *= 0.5 + LVL * 1.2;
    col += PAL(0.75) * 0.02;
    return tm(col * 1.2);
}
