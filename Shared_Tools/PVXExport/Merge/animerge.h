#pragma once

#include <string>
#include <vector>

// The step between the exporter and the burner: joins an exported model and animations into one model in the project's
// generic tree, and writes and burns what the model shares with others.

// As a script gives them: full paths in the system's form.
struct AniMergeArguments {
    int count = 0; // of the command's arguments; fewer than three are refused
    std::string mergeFile;
    std::string modelFile;
    std::vector<std::string> animFiles;
};

// What a merge leaves out when they are false. They are the process's, and keep their values from call to call.
struct AniMergeFlags {
    bool exportModel = true;    // merging animations, and saving the merged model
    bool exportTextures = true; // shared textures and team colour patterns
};
AniMergeFlags& GetAniMergeFlags();

// Brings the services up, merges, and takes them down; see MergeServices.h for what stays up after a failure. True
// when all was done. Failures are texts on the script listener, from the code below the log's. What is no standard
// exception goes through, and leaves the services up.
bool AniMerge(const AniMergeArguments& arguments, const AniMergeFlags& flags);

// The merge alone, with the services up.
bool AniMergeRun(const AniMergeArguments& arguments, const AniMergeFlags& flags);
