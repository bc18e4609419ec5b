#include "Pipeline.h"

#include <epoxy/gl.h>

namespace quellton {

void Pipeline::bind() const {
    glUseProgram(program);
    if (feedback) {
        glDisable(GL_BLEND);
    } else {
        glEnable(GL_BLEND);
        glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ZERO);
    }
}

}  // namespace quellton
