#pragma once

#define GL_GLEXT_PROTOTYPES
#include <GL/glcorearb.h>

#include <QSize>
#include <string_view>
#include <utility>

namespace workbench::gl {

// Owns one OpenGL name. The context must be current when it dies.
template <auto create, auto destroy>
class Name {
  public:
    Name() { create(1, &number); }
    ~Name() {
        if (number != 0) destroy(1, &number);
    }
    Name(Name&& other) noexcept : number(std::exchange(other.number, 0)) {}
    Name& operator=(Name&& other) noexcept {
        std::swap(number, other.number);
        return *this;
    }

    GLuint Number() const { return number; }

  private:
    GLuint number = 0;
};

using Buffer = Name<glGenBuffers, glDeleteBuffers>;
using Texture = Name<glGenTextures, glDeleteTextures>;
using VertexArray = Name<glGenVertexArrays, glDeleteVertexArrays>;
using FrameBuffer = Name<glGenFramebuffers, glDeleteFramebuffers>;
using RenderBuffer = Name<glGenRenderbuffers, glDeleteRenderbuffers>;

class Program {
  public:
    // Throws std::runtime_error with the compiler's words.
    Program(std::string_view vertexSource, std::string_view fragmentSource);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void Use() const { glUseProgram(number); }
    GLint Uniform(const char* name) const { return glGetUniformLocation(number, name); }

  private:
    GLuint number = 0;
};

// A picture to draw into, with depth.
class Target {
  public:
    // Makes it `newSize` pixels; `newSamples` of 0 is without anti-aliasing. Throws std::runtime_error.
    void Resize(QSize newSize, int newSamples);
    void Bind() const;
    GLuint Number() const { return frame.Number(); }

  private:
    FrameBuffer frame;
    RenderBuffer colour;
    RenderBuffer depth;
    QSize size;
    int samples = 0;
};

}  // namespace workbench::gl
