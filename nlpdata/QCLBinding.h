// The nonlinear model's binding to the correlation library: the library
// (opened on first use), its map of correlation identifiers and the
// correlation instances the model made (owned).
//
// Nothing is loaded until Initialize, which the model calls when a
// correlation is first used (a correlation term is evaluated, or a caller
// asks for the library's correlations). Initialize locates and opens the
// library (QCLLibrary::Locate with the configured path), then calls its
// gfx_qclInitializeAllocate; Uninitialize destroys the instances, calls
// gfx_qclFree and closes the library. A later use opens it again.
//
//   QCLBinding b;  b.SetPath("/opt/qcl/libmycorr.so");
//   IQCLCorrelation* rvp = b.InstanceFor("RVP", false);   // loads here
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

class IQCLCorrelation;
class QCLCorrelation;
class QCLLibrary;

class QCLBinding {
public:
    QCLBinding();
    ~QCLBinding();
    QCLBinding(const QCLBinding&) = delete;
    QCLBinding& operator=(const QCLBinding&) = delete;

    // The library path to use ("" = the environment variable or the
    // default). Takes effect at the next Initialize.
    void SetPath(const std::string& path) { m_path = path; }
    const std::string& Path() const { return m_path; }
    bool Loaded() const { return m_lib != nullptr; }

    // Opens and initialises the library when it is not; throws
    // ZEM_Exception when it cannot be opened or lacks an entry point, or
    // when its initialisation fails. True.
    bool Initialize();
    // Builds the identifier map (initialising first).
    void CreateIdMap();
    int Count();
    // Identifier of correlation `index`; false when out of range.
    bool Id(int index, std::string& id);
    // Number of the correlation named `id`; -1 when the library has none.
    int Index(const std::string& id);
    // A new instance of correlation `index`, owned here; throws when the
    // library does not know it.
    IQCLCorrelation* AddInstance(int index, bool log);
    // The shared instance for the correlation named `id` (made on first
    // request); throws ZEM_Exception when the library has no such correlation.
    IQCLCorrelation* InstanceFor(const std::string& id, bool log);
    // Sets the log flag of every instance.
    void SetLog(bool on);
    void Uninitialize();

private:
    std::string m_path;
    std::unique_ptr<QCLLibrary> m_lib;
    bool m_mapped = false;
    std::vector<std::string> m_ids;
    std::unordered_map<std::string, int> m_index;
    std::vector<std::unique_ptr<QCLCorrelation>> m_instances;
    std::unordered_map<std::string, IQCLCorrelation*> m_byId;
};
