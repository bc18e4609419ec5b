#pragma once

// The rendering subsystem at a glance: shader library and offline stills, frame inputs,
// the live renderer, and the windows the render thread draws.
#include "Canvas.h"
#include "FrameInputs.h"
#include "RenderSettings.h"
#include "RenderThread.h"
#include "ShaderLibrary.h"
#include "VisualRenderer.h"
#include "WindowSystemGl.h"
