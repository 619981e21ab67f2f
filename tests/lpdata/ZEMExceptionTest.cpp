#include "lpdata/ZEMException.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

// HandleExcp writes the same display into the traceback.
TEST(ZEMException, DisplayOmitsEmptyRoutineSourceAndLine) {
    ZEM_Exception e("LPStdDataMgr Error", "something broke");
    std::ostringstream os, trace;
    e.Display(os);
    EXPECT_EQ(os.str(), "Exception Name : LPStdDataMgr Error\nException Reason : something broke\n\n");
    e.HandleExcp();
    e.DumpErrorBuf(trace);
    EXPECT_EQ(trace.str(), os.str() + "\n");
}

TEST(ZEMException, DisplayWritesEveryKnownField) {
    ZEM_Exception e("N", "R", "LPMatrix::TrasnNonZero", "lpdata", 42);
    std::ostringstream os;
    e.Display(os);
    EXPECT_EQ(os.str(),
              "Exception Name : N\nException Reason : R\nException Routine: LPMatrix::TrasnNonZero\n"
              "Exception Src File: lpdata\nException Line No: 42\n\n");
}

TEST(ZEMException, FileErrorTextsByType) {
    const char* expected[] = {"File Not Found\n", "Error Creating File for Write\n",
                              "Error during data READ\n", "Error during data WRITE\n",
                              "General File Operation Error - Type Unknown\n"};
    const int types[] = {1, 2, 3, 4, 7};
    for (int i = 0; i < 5; ++i) {
        ZEM_ExcpFileError e(static_cast<tExcpFileErrorType>(types[i]), " ", "a.mps",
                            "MPSStdReader::OpenMPSFile", "mpsutil", 0);
        std::ostringstream os;
        e.Display(os);
        const std::string text = os.str();
        EXPECT_EQ(e.Name(), "ZEM_ExcpFileError");
        EXPECT_EQ(e.Reason(), "File Operation Exception");
        EXPECT_NE(text.find("File Directory :  \nFile Name : a.mps\n"), std::string::npos);
        EXPECT_EQ(text.substr(text.size() - std::strlen(expected[i])), expected[i]) << types[i];
    }
}

TEST(ZEMException, BadAllocationDisplay) {
    ZEM_ExcpBadAllocation e("LPVariable", 128, "X::Y", "lpdata", 3);
    std::ostringstream os;
    e.Display(os);
    EXPECT_EQ(e.Name(), "ZEM_ExcpBadAllocation");
    EXPECT_EQ(e.Reason(), "Allocation (new) Exception");
    EXPECT_NE(os.str().find("Allocation Failed for Object :\nObject ID : LPVariable   SizeOf : 128\n\n"),
              std::string::npos);
}

TEST(ZEMException, TracebackIsDumpedOncePerExceptionAndCopies) {
    ZEM_Exception e("N", "R");
    *e.Getbufptr() << "trace line";
    ZEM_Exception copy = e;
    std::ostringstream first, second;
    copy.DumpErrorBuf(first);
    e.DumpErrorBuf(second);
    EXPECT_EQ(first.str(), "trace line\n");
    EXPECT_EQ(second.str(), "NULL Error Traceback Buffer\n");
    EXPECT_EQ(e.Getbufptr(), nullptr);
}

TEST(ZEMException, BoundedCopiesDoNotTerminateAFullBuffer) {
    ZEM_Exception e("LongName", "Reason", "A::B");
    char buf[8];
    std::memset(buf, 'x', sizeof buf);
    e.GetExcpName(buf, 4);
    EXPECT_EQ(std::string(buf, 5), "Longx");
    e.GetExcpRoutine(buf, 8);
    EXPECT_STREQ(buf, "A::B");
}

TEST(ZEMException, RaiseMacroCarriesSourceAndLine) {
    try {
        ZEM_RAISE(zemsrc::kLpData, "LPVariableList Error", "msg", "LPVariableList::StreamReadSafe");
        FAIL() << "no throw";
    } catch (ZEM_Exception& e) {
        EXPECT_EQ(e.Name(), "LPVariableList Error");
        EXPECT_EQ(e.Reason(), "msg");
        EXPECT_EQ(e.Routine(), "LPVariableList::StreamReadSafe");
        EXPECT_EQ(e.SourceFile(), "lpdata");
        EXPECT_GT(e.Line(), 0);
        EXPECT_STREQ(e.what(), "LPVariableList Error: msg");
    }
}
