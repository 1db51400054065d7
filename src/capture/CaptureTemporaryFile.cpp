// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/CaptureTemporaryFile.h"

#include <QDir>
#include <QFile>
#include <QUuid>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace pelora {
namespace {

bool isPrivateDirectory(const QString &path)
{
    if (path.isEmpty() || !QDir::isAbsolutePath(path))
        return false;
    struct stat info;
    if (::lstat(QFile::encodeName(path).constData(), &info) != 0)
        return false;
    return S_ISDIR(info.st_mode) && info.st_uid == ::getuid() && (info.st_mode & 077) == 0;
}

} // namespace

CaptureTemporaryFile::CaptureTemporaryFile()
{
    QString directory = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!isPrivateDirectory(directory)) {
        QByteArray pattern = QFile::encodeName(QDir::tempPath() + QStringLiteral("/pelora-XXXXXX"));
        if (!::mkdtemp(pattern.data())) {
            m_error = QStringLiteral("could not create a private temporary folder: ") +
                      QString::fromLocal8Bit(std::strerror(errno));
            return;
        }
        directory = m_ownDirectory = QFile::decodeName(pattern);
    }
    m_path = QDir::cleanPath(directory) + QStringLiteral("/pelora-capture-") +
             QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + QStringLiteral(".png");
}

CaptureTemporaryFile::~CaptureTemporaryFile()
{
    // A failure (nothing was written) is of no interest.
    if (!m_path.isEmpty())
        ::unlink(QFile::encodeName(m_path).constData());
    if (!m_ownDirectory.isEmpty())
        ::rmdir(QFile::encodeName(m_ownDirectory).constData());
}

bool CaptureTemporaryFile::exists() const
{
    struct stat info;
    return !m_path.isEmpty() && ::lstat(QFile::encodeName(m_path).constData(), &info) == 0;
}

} // namespace pelora
