#pragma once

#include "foundation/ValueForm.h"
#include "metadata/CleanOptions.h"
// Helpers shared by the core tests: sample files, scratch folders, outside tools.

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tagmoor::test {

// Every group of the clean chosen.
inline constexpr CleanOptions kEveryGroup{true, true, true, true, true};

inline QString samplesDir() {
    return QStringLiteral(TAGMOOR_SAMPLES);
}
inline QString formatsDir() {
    return samplesDir() + QStringLiteral("/formats");
}
inline QString malformedDir() {
    return samplesDir() + QStringLiteral("/malformed");
}

inline QStringList sampleFiles(const QString& dir) {
    QStringList out;
    for (const QFileInfo& fi : QDir(dir).entryInfoList(QDir::Files, QDir::Name))
        out << fi.absoluteFilePath();
    return out;
}

// Copies a sample into `dir` (samples are read-only and must never be written) and makes the
// copy writable. Returns the copy's path.
inline QString copySample(const QString& samplePath, const QString& dir,
                          const QString& newName = {}) {
    const QString target =
        dir + QLatin1Char('/') + (newName.isEmpty() ? QFileInfo(samplePath).fileName() : newName);
    QFile::remove(target);
    EXPECT_TRUE(QFile::copy(samplePath, target)) << samplePath.toStdString();
    QFile(target).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                                 QFile::ReadOther);
    return target;
}

inline QByteArray readBytes(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline bool writeBytes(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
}

// A small real JPEG of the given size, without metadata.
inline QString makeJpeg(const QString& path, int width = 64, int height = 48) {
    QImage img(width, height, QImage::Format_RGB32);
    img.fill(qRgb(40, 120, 200));
    EXPECT_TRUE(img.save(path, "JPEG", 90)) << path.toStdString();
    return path;
}

struct ToolResult {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

// Waits for a started program and collects what it said; a program that does not end in
// `timeoutMs` is killed and gives exit code -1.
inline ToolResult finishTool(QProcess& p, int timeoutMs = 60000) {
    ToolResult r;
    if (!p.waitForFinished(timeoutMs)) {
        p.kill();
        p.waitForFinished();
        return r;
    }
    r.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = p.readAllStandardOutput();
    r.err = p.readAllStandardError();
    return r;
}

// The arguments of tagmoor-cli with the form of this test in front: the command line takes the
// standard form by default, and the suite's older tests check the described one.
inline QStringList cliArgs(const QStringList& args) {
    return QStringList{QStringLiteral("--form"), valueFormName(valueForm())} + args;
}

// Runs an outside program (exiv2, exiftool, tagmoor-cli) and waits for it; tagmoor-cli gets
// the test's form.
inline ToolResult runTool(const QString& program, const QStringList& args, int timeoutMs = 60000) {
    QProcess p;
    p.start(program, program.endsWith(QLatin1String("/tagmoor-cli")) ? cliArgs(args) : args);
    return finishTool(p, timeoutMs);
}

inline bool haveTool(const QString& name) {
    return !QStandardPaths::findExecutable(name).isEmpty();
}

} // namespace tagmoor::test
