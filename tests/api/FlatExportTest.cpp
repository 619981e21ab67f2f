// Every function of the flat interface is exported from the shared library
// under its plain name.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

// By family, as the header groups them.
const char* const kFamilies[] = {
    "CreateZEMObject ReleaseZEMObject GetZEMBuilder SetZEMModelName IsHybridModel SetHybridModel "
    "ProcessFullCollection ReIndexConnectionEqn LinearizeGeneralNonlinear EvaluateInitial "
    "UpdateEflo NameScreen SetSCDControl PutOptionTable GetVariableCollectionIntf "
    "GetEquationCollectionIntf GetMatrixIntf GetNonLinearModelIntf",
    "RestoreFromZEMFile WriteZEMFile AppendFromZEM AppendFromZEMFile CopyFromZEM CreateZEMStream "
    "WriteZEMSummary WritePenaltyFile RestoreFromMPSFile RestoreFromMPSStream WriteXMPSFile "
    "CompareZEMtoBasis CheckDuplicateNames",
    "NumberOfVariables NumberOfEquations FrstVariableName NextVariableName FrstEquationName "
    "NextEquationName FrstVariableObject NextVariableObject FrstEquationObject NextEquationObject "
    "VariableNames EquationNames RetrieveAllVariableObjects RetrieveAllEquationObjects "
    "FindVariableObject FindEquationObject",
    "VarIndexGet VarNameGet VarNameSet VarLowerBndGet VarLowerBndSet VarUpperBndGet VarUpperBndSet "
    "VarTempLowerBndGet VarTempLowerBndSet VarValueGet VarValueSet VarTypeGet VarTypeSet "
    "VarStatusGet VarStatusSet VarNonlinGet VarNonlinSet",
    "EqnIndexGet EqnNameGet EqnNameSet EqnRHSGet EqnRHSSet EqnRangeGet EqnRangeSet EqnScaleGet "
    "EqnScaleSet EqnTypeGet EqnTypeSet EqnNonlinGet EqnNonLinear",
    "RowFrstNonZeroObject RowNextNonZeroObject ColFrstNonZeroObject ColNextNonZeroObject "
    "RowFrstNonLinearityObject RowNextNonLinearityObject FindNonZeroObject GetNZVarEqnObjects "
    "GetCoefficient SetLinearNonZeroEntry RemoveNonZero RemoveNonZeroByNames TrashNonZero "
    "TrashNonZeroByNames EmptyNonZeroTrash",
    "MakeAddVariable MakeAddVariableNew MakeAddVarNew MakeAddVarTypeNew MakeAddReturnVariable "
    "MakeAddReturnVariableNew MakeAddEquation MakeAddEquationNew MakeAddEqn MakeAddEqnNew "
    "MakeAddReturnEquation MakeAddReturnEquationNew MakeAddLinearNonZero "
    "MakeAddReturnLinearNonZero MakeAddReturnLinearNonZeroNew AddSoftBounds EliminateVariable "
    "EliminateVariableByName EliminateEquation EliminateEquationByName",
    "MakeSpecialOrderedSet AddSpecialOrderedSet AddSpecialOrderedSetVariable "
    "AddSpecialOrderedSetVariableByName FindSpecialOrderedSet",
    "MakeNonLinearityByCode MakeNonLinearityByName FindNonLinearityCode MakeNonLinearityDivision "
    "MakeNonLinearityEI MakeNonLinearityEvapGDOT MakeNonLinearityExp MakeNonLinearityFLTQB "
    "MakeNonLinearityFast MakeNonLinearityFastQCL MakeNonLinearityFastNLE MakeNonLinearityFastSCD "
    "MakeNonLinearityFastWRAP MakeNonLinearityLog MakeNonLinearityPow MakeNonLinearityTPercent "
    "MakeNonLinearityXPow AddNonLinearity AddNonLinearityValue AddNonLinearityVariable "
    "AddNonLinearityVariableByName TrashNonLinearity EmptyNonLinearityTrash GetFirstNLVariable "
    "GetNextNLVariable GetFirstNLConstant GetFirstBiLinearVarEqn",
    "MakeAddReturnNamedVarCollection FindNamedVarCollection FirstNamedVarCollection "
    "NextNamedVarCollection RemoveNamedVarCollection AddVariableToNamedVarCollection "
    "AddVarByNameToNamedVarCollection GetCollectionName GetCollectionNumberVariables "
    "GetCollectionFirstVariable GetCollectionNextVariable GetDirection SetDirection GetType SetType",
    "CreateZEMCaseMgr DestroyZEMCaseMgr CreateZEMCaseCollection DestroyZEMCaseCollection "
    "AddZEMCaseToCollection AddEqnRHSEdit AddEqnRangeEdit AddEqnTypeEdit AddMatrixCoeffEdit "
    "AddMatrixCoeffEditNZ AddMatrixNonLinearityCoeffEdit AddOptionTableEdit AddVarBoundEdit "
    "AddVarTypeEdit AddVarValueEdit AddInitialVectorEdits ApplyCase UnApplyCase ApplyCaseNumber "
    "UnApplyCaseNumber PersistCasesToXLMFile RestoreCasesFromXLMFile DisplayCaseCollectionToFile",
    "InitializeQCL UninitializeQCL QCLCalculate CreateQCLIdMap MakeAddQCLCorrelationInstance "
    "GetQCLCorrelationCount GetQCLCorrelationId GetQCLCorrelationIndex GetQCLCorrelationDesc "
    "GetQCLCorrelationType GetQCLCorrelationBlendIndex GetQCLInputPropertyCount "
    "GetQCLInputPropertyId GetQCLInputPropertyValues GetQCLOutputPropertyCount "
    "GetQCLOutputPropertyId GetQCLOutputPropertyType GetQCLOutputPropertyValues "
    "GetQCLCoefficientCount GetQCLCoefficientValue GetQCLDerivativeValues GetQCLSlackCount "
    "SetQCLCoefficient SetQCLDerivativeOption SetQCLForwardOption SetQCLInputProperties "
    "SetQCLInputProperty SetMonotoneOption",
    "CreateNonLinearBlock CreateNonLinearBlockManifest AddNonLinearBlock NLBlkConstructBlock "
    "NLBlkInitializeBlockHost NLBlkManifestVerify",
};

const char* const kManifestFields[] = {
    "GQTModelType", "KebDfFileSpec", "BlockInstanceName", "DelayLoad", "InitScriptSpec",
    "InputOutputMap", "ModelSourceType", "PerioModelTags", "Solver", "SourceDirSpec",
    "SourceFileSpec"};

}  // namespace

TEST(FlatExports, EveryFunctionOfEveryFamilyIsExportedUnmangled) {
    void* lib = dlopen(ZEM_BINARY_DIR "/libzemxmps.so", RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(lib, nullptr) << dlerror();
    auto expectSymbol = [&](const std::string& name) {
        EXPECT_NE(dlsym(lib, name.c_str()), nullptr) << name;
    };
    for (const char* family : kFamilies) {
        std::istringstream names(family);
        for (std::string name; names >> name;) expectSymbol(name);
    }
    for (const char* field : kManifestFields) {
        expectSymbol(std::string("NLBlkManifestGet") + field);
        expectSymbol(std::string("NLBlkManifestSet") + field);
    }
    dlclose(lib);
}
