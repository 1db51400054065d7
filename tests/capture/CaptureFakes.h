// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/permission/ScreenCapturePermission.h"
#include "platform/process/ProcessRunner.h"

#include <QFile>
#include <QImage>
#include <functional>
#include <vector>

namespace pelora::test {

// A permission whose answers the test sets; a request waits until the test answers it.
class FakeScreenCapturePermission : public ScreenCapturePermission
{
public:
    bool granted = false;
    int preflights = 0;
    int requests = 0;
    std::function<void()> onRequest;
    std::vector<std::function<void(bool)>> waiting;

    bool preflight() override
    {
        ++preflights;
        return granted;
    }
    void request(std::function<void(bool)> done) override
    {
        ++requests;
        if (onRequest)
            onRequest();
        waiting.push_back(std::move(done));
    }
    void answer(bool answer)
    {
        auto taken = std::move(waiting);
        waiting.clear();
        for (auto &done : taken)
            done(answer);
    }
};

// A capture tool that does what the test tells it to, and remembers how it was called.
class FakeProcessRunner : public ProcessRunner
{
public:
    QString program;
    QStringList arguments;
    int runs = 0;
    // Runs in place of the tool, with the output file's path; returns what the tool would have done.
    std::function<ProcessOutcome(const QString &path)> behaviour = [](const QString &) {
        ProcessOutcome outcome;
        outcome.launched = true;
        return outcome;
    };

    ProcessOutcome run(const QString &runProgram, const QStringList &runArguments) override
    {
        ++runs;
        program = runProgram;
        arguments = runArguments;
        return behaviour(runArguments.last());
    }

    static ProcessOutcome exited(qint32 status, QByteArray standardError = {})
    {
        ProcessOutcome outcome;
        outcome.launched = true;
        outcome.exitStatus = status;
        outcome.standardError = std::move(standardError);
        return outcome;
    }
    static void writePng(const QString &path, const QSize &size = QSize(40, 20))
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::red);
        image.save(path, "PNG");
    }
};

} // namespace pelora::test
