#pragma once

#include "Shared/Cross/RenderAnim/Image/Image.h"

// The writers behind ImageLoad, one for each kind of picture file. What can't be written is found before the file is
// opened. The name is the file's alias path. False with a log line.

bool WriteTga(const char* pName, const Image& image);
bool WriteJpeg(const char* pName, const Image& image);
bool WriteDds(const char* pName, const Image& image);
