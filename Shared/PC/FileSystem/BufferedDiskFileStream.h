#pragma once

#include "Shared/PC/FileSystem/DiskFileStream.h"

#include <memory>

// A closed stream for reading a file through a buffer. Null when there is no memory for it.
std::unique_ptr<DiskFileStream> MakeBufferedDiskFileStream();
