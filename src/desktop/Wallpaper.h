#pragma once

// Desktop presence: the wallpaper windows and the desktop's own picture.
#include "SystemWallpaper.h"
#include "WallpaperController.h"
