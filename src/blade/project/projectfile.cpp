#include "blade/project/projectfile.h"

#include "system/exception.h"
#include "system/filereplacement.h"

#include <QFile>
#include <QStringList>
#include <QTextStream>

#include <cmath>

namespace {

void writeText(QTextStream& stream, const char* key, const QString& value)
{
    stream << key << "\t\"" << value << "\"" << Qt::endl;
}

void writeNumber(QTextStream& stream, const char* key, float value)
{
    stream << key << "\t" << value << Qt::endl;
}

/// 0 for what is no number, and for words and powers that give none that can be computed with.
float numberIn(const QString& text)
{
    const float value = text.toFloat();
    return std::isfinite(value) ? value : 0.0f;
}

void assign(ProjectConfig& project, const QString& key, const QString& value)
{
    QString text = value;
    text.remove('"');
    if (key == "ProjectName") {
        project.setProjectName(text);
    } else if (key == "ProjectPath") {
        project.setProjectPath(text);
    } else if (key == "Species") {
        project.setSpecie(text);
    } else if (key == "Genotype") {
        project.setGenotype(text);
    } else if (key == "GrowthCondition") {
        project.setGrowthCondition(text);
    } else if (key == "GroupLeaf") {
        project.setGroupLeaf(text);
    } else if (key == "VenationType") {
        if (text == "PINNATE") {
            project.setVenationType(PINNATE);
        } else if (text == "PALMATE") {
            project.setVenationType(PALMATE);
        }
    } else if (key == "kineticParameters") {
        project.setKineticEnabled(text == "true");
    } else if (key == "InflectionPoint") {
        project.setInflectionPoint(numberIn(text));
    } else if (key == "Scaling") {
        project.setScaling(numberIn(text));
    } else if (key == "StrengthFactor") {
        project.setStrengthFactor(numberIn(text));
    }
}

} // namespace

QByteArray ProjectFile::text(const ProjectConfig& project)
{
    QByteArray bytes;
    QTextStream stream(&bytes);
    stream.setCodec("UTF-8");
    writeText(stream, "ProjectName", project.getProjectName());
    writeText(stream, "ProjectPath", project.getProjectPath());
    writeText(stream, "Species", project.getSpecie());
    writeText(stream, "Genotype", project.getGenotype());
    writeText(stream, "GrowthCondition", project.getGrowthCondition());
    writeText(stream, "GroupLeaf", project.getLeafGroup());
    writeText(stream, "VenationType", venationName(project.getVenationType()));
    stream << "kineticParameters\t" << (project.kineticIsEnabled() ? "true" : "false") << Qt::endl;
    writeNumber(stream, "InflectionPoint", project.getInflectionPoint());
    writeNumber(stream, "Scaling", project.getScaling());
    writeNumber(stream, "StrengthFactor", project.getStrengthFactor());
    stream.flush();
    return bytes;
}

bool ProjectFile::write(const ProjectConfig& project, const QString& filename)
{
    try {
        FileReplacement::write("bool ProjectFile::write(const ProjectConfig&, const QString&)",
                               filename.toStdString(), text(project).toStdString());
    } catch (const FileWriteError&) {
        return false;
    }
    return true;
}

bool ProjectFile::read(ProjectConfig& project, const QString& filename)
{
    QFile file(filename);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return false;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    while (!stream.atEnd()) {
        const QStringList pieces = stream.readLine().split('\t');
        if (pieces.size() >= 2) {
            assign(project, pieces[0], pieces[1]);
        }
    }
    return true;
}

QString ProjectFile::venationName(VenationType type)
{
    switch (type) {
    case PINNATE:
        return "PINNATE";
    case PALMATE:
        return "PALMATE";
    }
    return "unknow type";
}
