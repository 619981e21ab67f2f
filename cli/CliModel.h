// The model a zem command works on, loaded from one input file. It owns the
// library's model object and releases it with the model's Destroy.
#pragma once

class ILPStdDataMgr;

class CliModel {
public:
    CliModel();
    ~CliModel();
    CliModel(const CliModel&) = delete;
    CliModel& operator=(const CliModel&) = delete;

    // The linear model: title, variables, equations, matrix and sets.
    ILPStdDataMgr* Data() const { return m_data; }

private:
    ILPStdDataMgr* m_data = nullptr;
};
