#pragma once

#include "Shared_Tools/Burner/Protocol/BurnerMsg.h"

#include <cstdint>
#include <string>
#include <vector>

class BurnReport;

// How a job's files are burned.
struct BurnOptions {
    int32_t changelist = 0;
    bool burnAll = false; // what is up to date, too
    bool subfolders = false;
    bool sayOnly = false;         // tell what would be done and write nothing
    bool revisionControl = false; // open outputs in the changelist before they are written
};

BurnOptions MakeOptions(const BurnRequestMsg& request);
// Lists come without flags: their outputs are opened when they name a changelist.
BurnOptions MakeListOptions(int32_t changelist);

// Full names of the folder's files that match, in name order; scripts of the burn itself aren't among them. With
// subfolders the files of each folder stand ahead of those of its subfolders. Throws std::runtime_error for a folder
// that isn't there and for an expression that is none.
std::vector<std::string> FindBurnFiles(const std::string& folder, const std::string& pattern, bool subfolders);

// Burns the files one by one. True when each of them was done or up to date; one bad file doesn't stop the others. Ends
// early when the other side has gone.
bool BurnFiles(const std::vector<std::string>& files, const BurnOptions& options, BurnReport& report);
