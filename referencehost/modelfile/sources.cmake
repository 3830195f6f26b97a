# Model snapshots in JSON files: saving a view model and loading it back, with
# positioned error messages. Paths are relative to referencehost/.
set(BRENNVIK_REFERENCEHOST_MODELFILE_SOURCES
    modelfile/JsonPath.h
    modelfile/JsonPath.cpp
    modelfile/JsonTextLocator.h
    modelfile/JsonTextLocator.cpp
    modelfile/ModelFileError.h
    modelfile/ModelFileError.cpp
    modelfile/ModelFileLimits.h
    modelfile/IndentedJsonSize.h
    modelfile/IndentedJsonSize.cpp
    modelfile/LoadProgress.h
    modelfile/LoadProgress.cpp
    modelfile/MessageText.h
    modelfile/MessageText.cpp
    modelfile/ModelFileReader.h
    modelfile/ModelFileReader.cpp
    modelfile/ModelFileWriter.h
    modelfile/ModelFileWriter.cpp
    modelfile/ReplaceFile.h
    modelfile/ReplaceFile.cpp
    modelfile/ModelFile.h
    modelfile/ModelFile.cpp
)
