/// @file
/// Parameters of "/cfg0/business_param.xml" by section and name, the named system settings, and the
/// translated texts.
///
/// A parameter is an element inside a top-level section element; its attributes are "Cur" (current
/// value), "Def" (factory default), "Min", "Max", "Step" (integers) and "OptTxt" (allowed texts in
/// one string). Sections are found by exact name, parameters by the beginning of their name, so
/// within a section a name that begins another must come first in the file.
///
/// Every call is one locked transaction: it opens the file, works, saves or gives up, and keeps
/// nothing. Each returns with the file unlocked. Threads: any, at any time.
/// Common failures, in addition to those named below: the file cannot be opened (reported by
/// CFG_GetDocByFileName); a null name or output; no memory. If memory runs out while a setter
/// saves, the main copy may be left incomplete, as described at CFG_SaveFile.
/// "FUNCTION LINE" below stands for the call's own name and a source line number.
#ifndef CAMCFG_PARAMS_H
#define CAMCFG_PARAMS_H

#include <camcfg/types.h>

/// Bytes of tagCFG_VALUE_TXT_S::acOptTxt.
#define CFG_TXT_OPT_SIZE 256
/// Bytes of tagCFG_VALUE_TXT_S::acDef.
#define CFG_TXT_DEF_SIZE 16
/// Bytes of tagCFG_VALUE_TXT_S::acCur, and of every text buffer that a caller of this header hands
/// in as a plain `char*` unless stated otherwise.
#define CFG_TXT_CUR_SIZE 256
/// Bytes of the buffer that CFG_LANG_GetString fills.
#define CFG_LANG_TEXT_SIZE 1024

/// A text parameter. Values too long for a field are cut to fit, with their terminator; a field is
/// written only as far as its text reaches.
struct tagCFG_VALUE_TXT_S {
  char acOptTxt[CFG_TXT_OPT_SIZE];  ///< "OptTxt": the allowed texts
  char acDef[CFG_TXT_DEF_SIZE];     ///< "Def": the default
  char acCur[CFG_TXT_CUR_SIZE];     ///< "Cur": the current value
};
/// Short name of the text parameter record.
typedef struct tagCFG_VALUE_TXT_S CFG_VALUE_TXT_S;

/// An integer parameter.
struct tagCFG_VALUE_INT_S {
  std::int32_t s32Min;   ///< "Min": smallest allowed value
  std::int32_t s32Max;   ///< "Max": largest allowed value
  std::int32_t s32Def;   ///< "Def": default
  std::int32_t s32Step;  ///< "Step": increment between allowed values (reported, not enforced)
  std::int32_t s32Cur;   ///< "Cur": current value
};
/// Short name of the integer parameter record.
typedef struct tagCFG_VALUE_INT_S CFG_VALUE_INT_S;

extern "C" {

/// Reads the text of a parameter.
/// @param pcSection  section, whole name
/// @param pcName     parameter, beginning of its name
/// @param pcOut      receives the characters of "Cur", at most CFG_TXT_CUR_SIZE, without a
///                   terminator: hand in a zeroed buffer. Untouched on failure.
/// @return 0 or -1
/// Prints: no top-level element, level 3 "Acquire %s root failed\n"; section, parameter or "Cur"
/// missing, "FUNCTION LINE failed\n" on standard output.
CFG_API int CFG_COM_GetTxtParam(char* pcSection, char* pcName, char* pcOut);

/// Reads the integer of a parameter.
/// @param pcSection  section, whole name
/// @param pcName     parameter, beginning of its name
/// @param ps32Out    receives "Cur"; untouched on failure
/// @return 0 or -1; anything missing, or a "Cur" that is no integer, is a failure
/// Prints: no top-level element, level 3 "Acquire %s root failed\n"; nothing else.
CFG_API int CFG_COM_GetIntParam(char* pcSection, char* pcName, int* ps32Out);

/// Sets the text of a parameter and saves.
/// @param pcSection  section, whole name
/// @param pcName     parameter, beginning of its name
/// @param pcText     new "Cur"; must occur somewhere in "OptTxt" (a fragment is enough, and the
///                   empty text always does)
/// @return 0 with the file and its backup saved; -1 with the file untouched
/// Prints: no top-level element, level 3 "Acquire %s root failed\n"; nothing else.
CFG_API int CFG_COM_SetTxtParam(char* pcSection, char* pcName, char* pcText);

/// Reads a text parameter whole, by its name only: the first section that has such a parameter
/// decides.
/// @param pcName    parameter, beginning of its name
/// @param pstValue  receives "OptTxt", "Def", "Cur" in this order; on a missing attribute the
///                  fields before it are already written, the others untouched
/// @return 0 or -1
/// Prints on standard output: file not opened, no top-level element, no "Def" or no "Cur",
/// "FUNCTION LINE failed\n"; no section has it, "FUNCTION LINE pcParamNameIndex = NAME not
/// found\n"; no "OptTxt", "FUNCTION LINE failed, pcParamNameIndex = NAME\n".
CFG_API int CFG_COM_GetTxtParams(char* pcName, tagCFG_VALUE_TXT_S* pstValue);

/// Reads an integer parameter whole, by its name only: the first section that has such a parameter
/// decides.
/// @param pcName    parameter, beginning of its name
/// @param pstValue  receives "Min", "Max", "Step", "Def", "Cur" in this order; on an attribute that
///                  is missing or no integer the fields before it are already written
/// @return 0 or -1
/// Prints: no top-level element, level 3 "Acquire %s root failed\n"; no section has it, "FUNCTION
/// LINE pcParamNameIndex = NAME not found\n" on standard output.
CFG_API int CFG_COM_GetIntParams(char* pcName, tagCFG_VALUE_INT_S* pstValue);

}  // extern "C"

/// Sets the integer of a parameter and saves.
/// @param pcSection  section, whole name
/// @param pcName     parameter, beginning of its name
/// @param s32Value   new "Cur"; "Min" and "Max" must exist and enclose it, ends included. "Step" is
///                   not looked at.
/// @return 0 with the file and its backup saved; -1 with the file untouched
/// Prints: no top-level element, level 3 "Acquire %s root failed\n"; nothing else.
CFG_API int CFG_COM_SetIntParam(char* pcSection, char* pcName, int s32Value);

/// Reads a text parameter that is a child of another parameter. The parent is found by its name
/// only, in the first section that has it.
/// @param pcParentName  parent parameter, beginning of its name
/// @param pcChildName   child parameter, beginning of its name
/// @param pstValue      as for CFG_COM_GetTxtParams
/// @return 0 or -1; later sections are not tried when the child is missing
/// Prints on standard output: file not opened, no top-level element, no "Def" or no "Cur",
/// "FUNCTION LINE failed\n"; no parent, "FUNCTION LINE pcParentName = PARENT not found\n"; no
/// child, "FUNCTION LINE pcChildName = CHILD not found\n"; no "OptTxt", "FUNCTION LINE failed,
/// pcChildName = CHILD\n".
CFG_API int CFG_COM_GetTxtParamByParent(char* pcParentName, char* pcChildName,
                                        tagCFG_VALUE_TXT_S* pstValue);

/// Sets the text of the first parameter of this name in any section, without checking it.
/// @param pcName  parameter, beginning of its name
/// @param pcText  new "Cur"
/// @param enSave  1: save; any other value: the change is dropped and the files stay as they were
/// @return 0 when the parameter was found, saved or not; -1 otherwise
/// Prints: file not opened, no top-level element or not found, "FUNCTION LINE failed\n" on standard
/// output.
CFG_API int CFG_COM_SetTxtParams(char* pcName, char* pcText, tagBU_BOOL enSave);

/// Sets the integer of the first parameter of this name in any section, without checking it.
/// @param pcName    parameter, beginning of its name
/// @param s32Value  new "Cur"
/// @param enSave    1: save; any other value: the change is dropped and the files stay as they were
/// @return 0 when the parameter was found, saved or not; -1 otherwise
/// Prints: as CFG_COM_SetTxtParams.
CFG_API int CFG_COM_SetIntParams(char* pcName, int s32Value, tagBU_BOOL enSave);

/// Reads the name of the user-interface language ("System" / "Language").
/// @param pcOut  as for CFG_COM_GetTxtParam: no terminator is written
/// @return 0 or -1; prints as CFG_COM_GetTxtParam
CFG_API int CFG_SYSTEM_GetLanguage(char* pcOut);

/// Reads the device's name and model (attributes of "System" / "DeviceAttr").
/// @param pcName   receives "DeviceName" with its terminator, cut to CFG_TXT_CUR_SIZE bytes; may be
///                 null
/// @param pcModel  receives "DeviceModel" likewise; may be null
/// @return 0; -1 with both outputs untouched when either attribute is missing
/// Prints: no top-level element, level 3 "Acquire %s root failed\n"; nothing else.
CFG_API int CFG_SYSTEM_GetDeviceName(char* pcName, char* pcModel);

/// Reads the web ports ("WebHttp", then "WebHttps"), each on its own.
/// @param ps32Http   receives the HTTP port; untouched if it cannot be read
/// @param ps32Https  receives the HTTPS port; untouched if it cannot be read
/// @return 0 when both were read, else -1
CFG_API int CFG_SYSTEM_GetHttpPort(int* ps32Http, int* ps32Https);

/// Sets the web ports ("WebHttp", then "WebHttps"), each in a transaction of its own: one may be
/// stored while the other is refused.
/// @param s32Http   HTTP port, checked against the parameter's "Min" and "Max"
/// @param s32Https  HTTPS port, checked likewise
/// @return 0 when both were stored, else -1
CFG_API int CFG_SYSTEM_SetHttpPort(int s32Http, int s32Https);

/// Reads the RTSP port ("Rtsp").
/// @return the port, or 0 when it cannot be read
CFG_API int CFG_SYSTEM_GetRtspPort();

/// Sets the RTSP port.
/// @param s32Port  port, checked against the parameter's "Min" and "Max"
/// @return 0 or -1
CFG_API int CFG_SYSTEM_SetRtspPort(int s32Port);

/// Reads the port of RTSP over HTTP ("RtspOverHttp").
/// @return the port, or 0 when it cannot be read
CFG_API int CFG_SYSTEM_GetRtspOverHttpPort();

/// Sets the port of RTSP over HTTP.
/// @param s32Port  port, checked against the parameter's "Min" and "Max"
/// @return 0 or -1
CFG_API int CFG_SYSTEM_SetRtspOverHttpPort(int s32Port);

/// Looks up a translated text in "/app/resource/language/LANGUAGE.xml" (path cut to 127
/// characters).
/// @param pcLanguage  language, the file's name without ".xml"
/// @param pcKey       key, the whole name of the text's element
/// @param pcOut       receives the text with its terminator, cut to CFG_LANG_TEXT_SIZE bytes; an
///                    entry without "Val" is an empty text. Untouched when the key is not found,
///                    which still returns 0: hand in a fallback text.
/// @return 0; -1 when the file cannot be opened or has no element
/// Prints: file not opened, "CFG_LANG_GetString acLangXml = PATH failed\n" on standard output; no
/// top-level element, level 3 "Acquire %s root failed\n" with the path.
CFG_API int CFG_LANG_GetString(char* pcLanguage, char* pcKey, char* pcOut);

#endif
