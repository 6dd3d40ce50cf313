#pragma once

#include <string_view>

// Pictures are drawn top down, as QImage stores them: the projection's Y is turned round.
namespace workbench::shaders {

constexpr std::string_view backgroundVertex = R"(#version 330 core
out float height;
void main() {
    vec2 corner = vec2((gl_VertexID & 1) * 4 - 1, (gl_VertexID & 2) * 2 - 1);
    height = 0.5 - 0.5 * corner.y;
    gl_Position = vec4(corner, 0.0, 1.0);
}
)";

constexpr std::string_view backgroundFragment = R"(#version 330 core
in float height;
out vec4 colour;
void main() {
    vec3 horizon = vec3(0.965, 0.968, 0.970);
    vec3 sky = vec3(0.800, 0.862, 0.918);
    colour = vec4(mix(horizon, sky, smoothstep(0.25, 1.0, height)), 1.0);
}
)";

constexpr std::string_view surfaceVertex = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 1) in vec4 normal;
layout(location = 2) in vec4 colour;
layout(location = 3) in uint element;
uniform mat4 projection;   // of what is seen from the camera's eye, world axes
uniform vec3 fromCamera;   // of the chunk's origin
uniform vec4 planes[6];    // xyz: normal, w: distance from the chunk's origin
uniform int planeCount;
uniform usamplerBuffer states;
out float gl_ClipDistance[6];
out vec3 seen;
out vec3 surfaceNormal;
out vec4 surfaceColour;
flat out uint selected;
void main() {
    seen = position + fromCamera;
    surfaceNormal = normal.xyz;
    surfaceColour = colour;
    selected = texelFetch(states, int(element)).r;
    gl_Position = projection * vec4(seen, 1.0);
    for (int at = 0; at < planeCount; ++at) gl_ClipDistance[at] = planes[at].w - dot(planes[at].xyz, position);
}
)";

// A sun, a bright sky above and a warm ground below, and a little light from the camera, so that
// no two faces of a building that meet look the same.
constexpr std::string_view surfaceFragment = R"(#version 330 core
in vec3 seen;
uniform vec4 viewer;  // from the eye, a point or with w = 0 a direction
in vec3 surfaceNormal;
in vec4 surfaceColour;
flat in uint selected;
out vec4 colour;
void main() {
    vec3 toCamera = normalize(viewer.xyz - viewer.w * seen);
    vec3 normal = normalize(surfaceNormal);
    if (dot(normal, toCamera) < 0.0) normal = -normal;
    vec3 sky = mix(vec3(0.53, 0.51, 0.49), vec3(0.66, 0.68, 0.71), 0.5 + 0.5 * normal.z);
    float sun = max(dot(normal, normalize(vec3(-0.40, -0.62, 0.68))), 0.0);
    float head = max(dot(normal, toCamera), 0.0);
    vec3 light = sky + vec3(0.36, 0.35, 0.33) * sun + 0.11 * head;
    vec4 base = surfaceColour;
    if (selected != 0u) {
        float brightness = dot(base.rgb, vec3(0.30, 0.59, 0.11));
        base = vec4(vec3(0.17, 0.72, 0.38) * (0.78 + 0.32 * brightness), max(base.a, 0.55));
    }
    colour = vec4(base.rgb * light, base.a);
}
)";

constexpr std::string_view lineVertex = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 2) in vec4 colour;
layout(location = 3) in uint element;
uniform mat4 projection;
uniform vec3 fromCamera;
uniform vec4 planes[6];
uniform int planeCount;
uniform usamplerBuffer states;
out float gl_ClipDistance[6];
out vec4 lineColour;
void main() {
    bool selected = texelFetch(states, int(element)).r != 0u;
    lineColour = selected ? vec4(0.02, 0.36, 0.16, 0.95) : vec4(mix(vec3(0.13, 0.15, 0.18), colour.rgb, 0.18), 0.62);
    gl_Position = projection * vec4(position + fromCamera, 1.0);
    for (int at = 0; at < planeCount; ++at) gl_ClipDistance[at] = planes[at].w - dot(planes[at].xyz, position);
}
)";

constexpr std::string_view lineFragment = R"(#version 330 core
in vec4 lineColour;
out vec4 colour;
void main() {
    colour = lineColour;
}
)";

}  // namespace workbench::shaders
