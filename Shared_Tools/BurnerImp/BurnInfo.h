#pragma once

class Chunky;
struct BurnSource;

// Who burned the file from what and when, as the first chunk of the output.
void WriteBurnInfo(Chunky& chunky, const BurnSource& source);
