#!/usr/bin/env python3
"""Writes src/foundation/modules/*Table.inc, the languages of ISO 639-1 and the countries of
ISO 3166-1, from the Debian package iso-codes, which no build needs. What languages and countries
call themselves stands below; those whose name is missing go by the English one."""

import json
import pathlib
import re
import unicodedata

DATA = pathlib.Path("/usr/share/iso-codes/json")
HEADER = "// Written by scripts/make-locales.py; do not edit.\n"

# Codes that the standard has withdrawn.
WITHDRAWN = {"sh"}

# Where the standard's English name is not the usual one.
ENGLISH_LANGUAGES = {
    "cu": "Church Slavonic", "ff": "Fula", "ht": "Haitian Creole", "ky": "Kyrgyz", "pa": "Punjabi",
    "ps": "Pashto", "ug": "Uyghur", "li": "Limburgish", "or": "Odia",
}
ENGLISH_COUNTRIES = {
    "BN": "Brunei", "CD": "Democratic Republic of the Congo", "FM": "Micronesia", "PS": "Palestine",
    "RU": "Russia", "SY": "Syria", "VA": "Vatican City", "VG": "British Virgin Islands",
    "VI": "United States Virgin Islands", "BQ": "Caribbean Netherlands", "SH": "Saint Helena",
}

OWN_LANGUAGES = {
    "aa": "Afaraf", "ab": "Аҧсуа", "an": "aragonés", "ar": "العربية", "as": "অসমীয়া",
    "av": "авар мацӀ", "am": "አማርኛ", "az": "azərbaycan", "ay": "aymar aru", "ba": "башҡорт теле",
    "be": "беларуская", "bg": "български", "bm": "bamanankan", "bn": "বাংলা", "bo": "བོད་ཡིག",
    "br": "brezhoneg", "bs": "bosanski", "ca": "català", "ce": "нохчийн мотт", "ch": "Chamoru",
    "co": "corsu", "cs": "čeština", "cv": "чӑваш чӗлхи", "cy": "Cymraeg", "da": "dansk",
    "de": "Deutsch", "dv": "ދިވެހި", "dz": "རྫོང་ཁ", "ee": "Eʋegbe", "el": "Ελληνικά",
    "es": "español", "et": "eesti", "eu": "euskara", "fa": "فارسی", "ff": "Fulfulde",
    "fi": "suomi", "fj": "vosa Vakaviti", "fo": "føroyskt", "fr": "français", "fy": "Frysk",
    "ga": "Gaeilge", "gd": "Gàidhlig", "gl": "galego", "gn": "avañe'ẽ", "gu": "ગુજરાતી",
    "gv": "Gaelg", "he": "עברית", "hi": "हिन्दी", "hr": "hrvatski", "ht": "kreyòl ayisyen",
    "hu": "magyar", "hy": "հայերեն", "hz": "Otjiherero", "id": "bahasa Indonesia",
    "ia": "interlingua", "ii": "ꆈꌠꉙ", "ik": "Iñupiaq", "is": "íslenska", "it": "italiano",
    "iu": "ᐃᓄᒃᑎᑐᑦ", "ja": "日本語", "jv": "basa Jawa", "ka": "ქართული", "ki": "Gĩkũyũ",
    "kk": "қазақ тілі", "kl": "kalaallisut", "km": "ភាសាខ្មែរ", "kn": "ಕನ್ನಡ", "ko": "한국어",
    "ks": "कॉशुर", "ku": "kurdî", "kv": "коми кыв", "kw": "Kernewek", "ky": "кыргызча",
    "la": "lingua Latina", "lb": "Lëtzebuergesch", "lg": "Luganda", "li": "Limburgs",
    "ln": "lingála", "lo": "ລາວ", "lt": "lietuvių", "lv": "latviešu",
    "mg": "Malagasy", "mi": "te reo Māori", "mk": "македонски",
    "ml": "മലയാളം", "mn": "монгол", "mr": "मराठी", "ms": "bahasa Melayu", "mt": "Malti",
    "my": "မြန်မာ", "nb": "norsk bokmål", "nd": "isiNdebele", "ne": "नेपाली", "ng": "Oshindonga",
    "nl": "Nederlands", "nn": "norsk nynorsk", "no": "norsk", "nr": "isiNdebele",
    "nv": "Diné bizaad", "ny": "chiCheŵa", "oc": "occitan", "om": "Oromoo", "or": "ଓଡ଼ିଆ",
    "os": "ирон", "pa": "ਪੰਜਾਬੀ", "pi": "पाळि", "pl": "polski", "ps": "پښتو", "pt": "português",
    "qu": "Runa Simi", "rm": "rumantsch", "rn": "Ikirundi", "ro": "română", "ru": "русский",
    "rw": "Kinyarwanda", "sa": "संस्कृतम्", "sc": "sardu", "sd": "سنڌي", "se": "davvisámegiella",
    "sg": "Sängö", "si": "සිංහල", "sk": "slovenčina", "sl": "slovenščina", "sm": "gagana Samoa",
    "sn": "chiShona", "so": "Soomaali", "sq": "shqip", "sr": "српски", "ss": "SiSwati",
    "st": "Sesotho", "su": "basa Sunda", "sv": "svenska", "sw": "Kiswahili", "ta": "தமிழ்",
    "te": "తెలుగు", "tg": "тоҷикӣ", "th": "ไทย", "ti": "ትግርኛ", "tk": "türkmen", "tn": "Setswana",
    "to": "lea faka-Tonga", "tr": "Türkçe", "ts": "Xitsonga", "tt": "татарча",
    "ty": "reo Tahiti", "ug": "ئۇيغۇرچە", "uk": "українська", "ur": "اردو", "uz": "oʻzbek",
    "ve": "Tshivenḓa", "vi": "Tiếng Việt", "vo": "Volapük", "wa": "walon", "xh": "isiXhosa",
    "yi": "ייִדיש", "yo": "Yorùbá", "za": "Vahcuengh", "zh": "中文", "zu": "isiZulu",
}

# In the language of the country, where there is one for all of it.
OWN_COUNTRIES = {
    "AE": "الإمارات", "AL": "Shqipëria", "AM": "Հայաստան", "AO": "Angola", "AT": "Österreich",
    "AX": "Åland", "AZ": "Azərbaycan", "BA": "Bosna i Hercegovina", "BD": "বাংলাদেশ",
    "BG": "България", "BH": "البحرين", "BL": "Saint-Barthélemy", "BR": "Brasil",
    "BY": "Беларусь", "CI": "Côte d’Ivoire", "CN": "中国", "CU": "Cuba", "CW": "Curaçao",
    "CZ": "Česko", "DE": "Deutschland", "DK": "Danmark", "DO": "República Dominicana",
    "DZ": "الجزائر", "EE": "Eesti", "EG": "مصر", "ES": "España", "ET": "ኢትዮጵያ", "FO": "Føroyar",
    "GE": "საქართველო", "GF": "Guyane", "GL": "Kalaallit Nunaat", "GN": "Guinée",
    "GQ": "Guinea Ecuatorial", "GR": "Ελλάδα", "GW": "Guiné-Bissau", "HR": "Hrvatska",
    "HU": "Magyarország", "IL": "ישראל", "IR": "ایران", "IS": "Ísland", "IT": "Italia",
    "JO": "الأردن", "JP": "日本", "KG": "Кыргызстан", "KH": "កម្ពុជា", "KP": "조선",
    "KR": "대한민국", "KW": "الكويت", "KZ": "Қазақстан", "LA": "ລາວ", "LB": "لبنان",
    "LT": "Lietuva", "LV": "Latvija", "LY": "ليبيا", "MA": "المغرب", "MD": "Moldova",
    "ME": "Crna Gora", "MK": "Северна Македонија", "MM": "မြန်မာ", "MN": "Монгол Улс",
    "MX": "México", "MZ": "Moçambique", "NC": "Nouvelle-Calédonie", "NL": "Nederland",
    "NO": "Norge", "NP": "नेपाल", "OM": "عُمان", "PA": "Panamá", "PE": "Perú",
    "PF": "Polynésie française", "PL": "Polska", "PM": "Saint-Pierre-et-Miquelon",
    "PS": "فلسطين", "QA": "قطر", "RE": "La Réunion", "RO": "România", "RS": "Србија",
    "RU": "Россия", "SA": "السعودية", "SE": "Sverige", "SI": "Slovenija", "SK": "Slovensko",
    "SN": "Sénégal", "ST": "São Tomé e Príncipe", "SY": "سوريا", "TD": "Tchad", "TH": "ไทย",
    "TJ": "Тоҷикистон", "TM": "Türkmenistan", "TN": "تونس", "TR": "Türkiye", "TW": "臺灣",
    "UA": "Україна", "UZ": "Oʻzbekiston", "VA": "Città del Vaticano", "VN": "Việt Nam",
    "WF": "Wallis-et-Futuna", "YE": "اليمن",
}


def entries(name):
    with open(DATA / f"iso_{name}.json") as file:
        return json.load(file)[name]


def english(usual, entry, code):
    """The plain name in base letters: a literal in the code holds no others, and names are compared
    by base letters anyway."""
    name = usual.get(code) or entry.get("common_name", entry["name"])
    name = re.sub(r" \(.*\)", "", name).removeprefix("Modern ")
    name = re.sub(r"^([^,]*), (?:[^,]* )?of$", r"\1", name)  # "Moldova, Republic of"
    letters = unicodedata.normalize("NFKD", name.replace("’", "'"))
    return letters.encode("ascii", "ignore").decode()


def languages():
    for entry in entries("639-3"):
        code = entry.get("alpha_2", "")
        if code and code not in WITHDRAWN:
            name = english(ENGLISH_LANGUAGES, entry, code)
            yield name, f'{{"{code}", "{name}", "{OWN_LANGUAGES.get(code, name)}"}},\n'


def countries():
    for entry in entries("3166-1"):
        code = entry["alpha_2"]
        name = english(ENGLISH_COUNTRIES, entry, code)
        number = int(entry["numeric"])
        codes = f'"{code}", "{entry["alpha_3"]}", {number}'
        yield name, f'{{{codes}, "{name}", "{OWN_COUNTRIES.get(code, name)}"}},\n'


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    for table, rows in ("Language", languages()), ("Country", countries()):
        rows = sorted(rows)
        names = [name for name, _ in rows]
        assert len(set(names)) == len(names), "two share a name"
        path = root / "src" / "foundation" / "modules" / f"{table}Table.inc"
        path.write_text(HEADER + "".join(row for _, row in rows))


if __name__ == "__main__":
    main()
