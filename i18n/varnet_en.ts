<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>DeletedText</name>
    <message numerus="yes">
        <source>Erased in %Ln days</source>
        <translation>
            <numerusform>Erased in %Ln day</numerusform>
            <numerusform>Erased in %Ln days</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DeletionCommand</name>
    <message numerus="yes">
        <source>Delete %Ln Meetings</source>
        <translation>
            <numerusform>Delete Meeting</numerusform>
            <numerusform>Delete %Ln Meetings</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>MeetingPresentation</name>
    <message numerus="yes">
        <source>%n speakers</source>
        <translation>
            <numerusform>%n speaker</numerusform>
            <numerusform>%n speakers</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n to-dos</source>
        <translation>
            <numerusform>%n to-do</numerusform>
            <numerusform>%n to-dos</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RowMenu</name>
    <message numerus="yes">
        <source>Delete %Ln meetings</source>
        <translation>
            <numerusform>Delete %Ln meeting</numerusform>
            <numerusform>Delete %Ln meetings</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VersionDifference</name>
    <message numerus="yes">
        <source>%Ln turns fewer than now</source>
        <translation>
            <numerusform>%Ln turn fewer than now</numerusform>
            <numerusform>%Ln turns fewer than now</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln turns more than now</source>
        <translation>
            <numerusform>%Ln turn more than now</numerusform>
            <numerusform>%Ln turns more than now</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln turns differ</source>
        <translation>
            <numerusform>%Ln turn differs</numerusform>
            <numerusform>%Ln turns differ</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>varnet::DeletedModel</name>
    <message numerus="yes">
        <source>Restore %Ln</source>
        <translation>
            <numerusform>Restore %Ln</numerusform>
            <numerusform>Restore %Ln</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Erase %Ln now</source>
        <translation>
            <numerusform>Erase %Ln now</numerusform>
            <numerusform>Erase %Ln now</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Erase %Ln meetings now?</source>
        <translation>
            <numerusform>Erase %Ln meeting now?</numerusform>
            <numerusform>Erase %Ln meetings now?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>varnet::DraftModel</name>
    <message numerus="yes">
        <source>Removed %Ln points that didn&apos;t match the transcript.</source>
        <translation>
            <numerusform>Removed %Ln point that didn&apos;t match the transcript.</numerusform>
            <numerusform>Removed %Ln points that didn&apos;t match the transcript.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>varnet::ErrorBanner</name>
    <message numerus="yes">
        <source>Changes to %Ln meetings have not been saved; they are kept in memory. %1</source>
        <translation>
            <numerusform>Changes to a meeting have not been saved; they are kept in memory. %1</numerusform>
            <numerusform>Changes to %Ln meetings have not been saved; they are kept in memory. %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>varnet::LibraryModel</name>
    <message numerus="yes">
        <source>%Ln selected</source>
        <translation>
            <numerusform>%Ln selected</numerusform>
            <numerusform>%Ln selected</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln matches</source>
        <translation>
            <numerusform>%Ln match</numerusform>
            <numerusform>%Ln matches</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>varnet::UndoToast</name>
    <message numerus="yes">
        <source>Deleted %Ln meetings</source>
        <translation>
            <numerusform>Deleted %Ln meeting</numerusform>
            <numerusform>Deleted %Ln meetings</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>varnet::VersionHistory</name>
    <message numerus="yes">
        <source>%Ln more versions can&apos;t be read. Their files are left as they are.</source>
        <translation>
            <numerusform>%Ln more version can&apos;t be read. Its file is left as it is.</numerusform>
            <numerusform>%Ln more versions can&apos;t be read. Their files are left as they are.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>varnet::WorkStatus</name>
    <message numerus="yes">
        <source>%Ln more waiting</source>
        <translation>
            <numerusform>%Ln more waiting</numerusform>
            <numerusform>%Ln more waiting</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln file</numerusform>
            <numerusform>%Ln files</numerusform>
        </translation>
    </message>
</context>
</TS>
