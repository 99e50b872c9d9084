// Entry point of every Windows test executable: one OLE apartment on the main thread, as in a front end.
#include <windows.h>
#include <ole2.h>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (FAILED(OleInitialize(nullptr))) return 2;
    const int rc = RUN_ALL_TESTS();
    OleUninitialize();
    return rc;
}
