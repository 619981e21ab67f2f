// The model a zem command works on, loaded from one input file. It owns the
// library's model object and releases it.
//
// By default the model is a standard data manager (the linear model). A
// command or an input format that needs the whole model (nonlinear terms,
// options, evaluation) asks for Zem() before loading: the model is then a
// model manager, and Data() is that manager.
#pragma once

class ILPStdDataMgr;
class IZEMMgr;

class CliModel {
public:
    CliModel() = default;
    ~CliModel();
    CliModel(const CliModel&) = delete;
    CliModel& operator=(const CliModel&) = delete;

    // The linear model: title, variables, equations, matrix and sets.
    ILPStdDataMgr* Data();
    // The model as a model manager, made on first request (replacing a
    // standard data manager that holds nothing yet).
    IZEMMgr* Zem();
    // The model manager if the model is one, else null (a linear model read
    // as a standard data manager has no terms, collections or options).
    IZEMMgr* ZemIfAny() const { return m_zem; }

private:
    ILPStdDataMgr* m_data = nullptr;
    IZEMMgr* m_zem = nullptr;
};
