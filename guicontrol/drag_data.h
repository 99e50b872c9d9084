#pragma once
// The file list (CF_HDROP) of a dragged data object.
#include <windows.h>
#include <objidl.h>
#include <string>

// The first file name of the data object's CF_HDROP list; empty when there is none or it is malformed.
std::wstring FirstDroppedFileName(IDataObject* data);
