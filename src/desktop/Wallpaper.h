#pragma once

// Desktop presence: the wallpaper windows.
#include "WallpaperController.h"
