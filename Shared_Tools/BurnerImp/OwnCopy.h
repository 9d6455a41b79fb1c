#pragma once

// The tools run the burner as a copy of its own, "Burner_<n>.exe", and delete that in the end, unless they are gone by
// then. So a copy takes itself away; under any other name the program isn't deleted.
void DeleteOwnCopy();
