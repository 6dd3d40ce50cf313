#include "Workbench/view/GlObjects.hpp"

#include <array>
#include <stdexcept>
#include <string>

namespace workbench::gl {
namespace {

class Shader {
  public:
    Shader(GLenum type, std::string_view source) : number(glCreateShader(type)) {
        const char* text = source.data();
        const auto length = static_cast<GLint>(source.size());
        glShaderSource(number, 1, &text, &length);
        glCompileShader(number);
        GLint good = 0;
        glGetShaderiv(number, GL_COMPILE_STATUS, &good);
        if (good != 0) return;
        std::array<char, 1024> log{};
        glGetShaderInfoLog(number, log.size(), nullptr, log.data());
        glDeleteShader(number);
        throw std::runtime_error(std::string("The 3D view's shader does not compile: ") + log.data());
    }
    ~Shader() { glDeleteShader(number); }
    Shader(const Shader&) = delete;
    Shader& operator=(const Shader&) = delete;

    GLuint Number() const { return number; }

  private:
    GLuint number;
};

}  // namespace

Program::Program(std::string_view vertexSource, std::string_view fragmentSource) {
    const Shader vertex(GL_VERTEX_SHADER, vertexSource);
    const Shader fragment(GL_FRAGMENT_SHADER, fragmentSource);
    number = glCreateProgram();
    glAttachShader(number, vertex.Number());
    glAttachShader(number, fragment.Number());
    glLinkProgram(number);
    GLint good = 0;
    glGetProgramiv(number, GL_LINK_STATUS, &good);
    if (good != 0) return;
    std::array<char, 1024> log{};
    glGetProgramInfoLog(number, log.size(), nullptr, log.data());
    glDeleteProgram(number);
    throw std::runtime_error(std::string("The 3D view's program does not link: ") + log.data());
}

Program::~Program() {
    glDeleteProgram(number);
}

void Target::Resize(QSize newSize, int newSamples) {
    if (size == newSize && samples == newSamples) return;
    size = newSize;
    samples = newSamples;
    glBindFramebuffer(GL_FRAMEBUFFER, frame.Number());
    glBindRenderbuffer(GL_RENDERBUFFER, colour.Number());
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, GL_RGBA8, size.width(), size.height());
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, colour.Number());
    glBindRenderbuffer(GL_RENDERBUFFER, depth.Number());
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, GL_DEPTH_COMPONENT24, size.width(),
                                     size.height());
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, depth.Number());
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE) return;
    size = {};
    throw std::runtime_error("The 3D view has no memory for a picture of this size.");
}

void Target::Bind() const {
    glBindFramebuffer(GL_FRAMEBUFFER, frame.Number());
    glViewport(0, 0, size.width(), size.height());
}

}  // namespace workbench::gl
