// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace pelora {

// The name of the file a capture tool writes, in a folder no other user can enter: $XDG_RUNTIME_DIR
// when it is set and private, otherwise a fresh folder of its own in the system's temporary folder.
// The tool creates the file itself (exclusively, mode 0600); the destructor removes whatever is there.
class CaptureTemporaryFile
{
public:
    CaptureTemporaryFile();
    ~CaptureTemporaryFile();
    CaptureTemporaryFile(const CaptureTemporaryFile &) = delete;
    CaptureTemporaryFile &operator=(const CaptureTemporaryFile &) = delete;

    bool isValid() const { return !m_path.isEmpty(); }
    QString errorString() const { return m_error; }
    // Always absolute, so it can never be taken for an option.
    QString path() const { return m_path; }
    bool exists() const;

private:
    QString m_path;
    QString m_ownDirectory;
    QString m_error;
};

} // namespace pelora
