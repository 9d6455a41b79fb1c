#pragma once

// The tools run the burner as a copy of its own, "Burner_<n>.exe", and delete that in the end. When they are gone
// themselves, the copy does; from any other name the program isn't deleted.
void DeleteOrphanedCopy();
