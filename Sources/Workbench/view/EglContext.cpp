#include "Workbench/view/EglContext.hpp"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <array>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>

namespace workbench {
namespace {

[[noreturn]] void Fail(const char* step) {
    std::array<char, 16> code{};
    std::snprintf(code.data(), code.size(), "0x%04x", eglGetError());
    throw std::runtime_error(std::string("No OpenGL 3.3 for the 3D view: ") + step + " failed with " +
                             code.data());
}

EGLDisplay OpenDisplay() {
    const char* extensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    const bool surfaceless =
        extensions != nullptr &&
        std::string_view(extensions).find("EGL_MESA_platform_surfaceless") != std::string_view::npos;
    const auto getPlatformDisplay =
        reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(eglGetProcAddress("eglGetPlatformDisplayEXT"));
    if (surfaceless && getPlatformDisplay != nullptr)
        return getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr);
    return eglGetDisplay(EGL_DEFAULT_DISPLAY);
}

}  // namespace

// The display is shared by the whole process, so it is never terminated.
EglContext::EglContext() : display(OpenDisplay()) {
    if (display == EGL_NO_DISPLAY) Fail("eglGetDisplay");
    if (eglInitialize(display, nullptr, nullptr) == EGL_FALSE) Fail("eglInitialize");
    if (eglBindAPI(EGL_OPENGL_API) == EGL_FALSE) Fail("eglBindAPI");

    const std::array<EGLint, 5> wanted{EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT,
                                       EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (eglChooseConfig(display, wanted.data(), &config, 1, &count) == EGL_FALSE || count == 0)
        Fail("eglChooseConfig");

    const std::array<EGLint, 5> surfaceSize{EGL_WIDTH, 16, EGL_HEIGHT, 16, EGL_NONE};
    surface = eglCreatePbufferSurface(display, config, surfaceSize.data());
    if (surface == EGL_NO_SURFACE) Fail("eglCreatePbufferSurface");

    const std::array<EGLint, 7> version{EGL_CONTEXT_MAJOR_VERSION,
                                        3,
                                        EGL_CONTEXT_MINOR_VERSION,
                                        3,
                                        EGL_CONTEXT_OPENGL_PROFILE_MASK,
                                        EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT,
                                        EGL_NONE};
    context = eglCreateContext(display, config, EGL_NO_CONTEXT, version.data());
    if (context == EGL_NO_CONTEXT) {
        eglDestroySurface(display, surface);
        Fail("eglCreateContext");
    }
    if (eglMakeCurrent(display, surface, surface, context) == EGL_FALSE) {
        eglDestroyContext(display, context);
        eglDestroySurface(display, surface);
        Fail("eglMakeCurrent");
    }
}

EglContext::~EglContext() {
    eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(display, context);
    eglDestroySurface(display, surface);
    eglReleaseThread();
}

}  // namespace workbench
