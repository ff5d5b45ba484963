// The pictures in a folder.
#ifndef APPS_PORTRAITCUT_FOLDER_WALK_H
#define APPS_PORTRAITCUT_FOLDER_WALK_H

#include <string>
#include <vector>

#include "input_source.h"

// Whether there is a folder of this name.
bool isFolder(const std::string& path);

// Adds the files in `folder` whose names end as pictures' do, in the order of their names' bytes; those of sub-folders
// too if `recursive`. Names that begin with a dot and the folder `leaveOut` are passed over, and links to folders are
// not followed. Throws Failure.
void walkFolder(const std::string& folder, bool recursive, const std::string& leaveOut, std::vector<Input>& inputs);

#endif
