// Reads a standard MPS file with the installed library and prints its size:
//   model_size blend.mps   ->   BLEND: 6 rows, 4 columns, 23 nonzeros
#include <iostream>
#include <string>

#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "mpsutil/MPSStdManager.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: model_size FILE.mps\n";
        return 2;
    }
    ILPStdDataMgr* model = nullptr;
    MPSStdManager* reader = nullptr;
    CreateLPStdDataObject(&model);
    CreateMPSStdManagerObject(&reader);
    int status = 0;
    try {
        model->SetModelTitle("");  // take the title from the NAME card
        reader->SetLPDataMgr(model);
        reader->SetMPSFileSpec(argv[1]);
        reader->ReadMPSFile();
        ILPEquationList* rows = nullptr;
        ILPVariableList* columns = nullptr;
        ILPMatrix* matrix = nullptr;
        model->GetEquationCollectionIntf(&rows);
        model->GetVariableCollectionIntf(&columns);
        model->GetMatrixIntf(&matrix);
        std::string title;
        model->GetModelTitle(title);
        std::cout << title << ": " << rows->NumberOfEquations() << " rows, "
                  << columns->NumberOfVariables() << " columns, " << matrix->NumberOfNonZeros()
                  << " nonzeros\n";
    } catch (ZEM_Exception& e) {
        e.Display(std::cerr);
        status = 1;
    }
    reader->Destroy();
    model->Destroy();
    return status;
}
