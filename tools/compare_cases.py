"""The runs that compare-runs.sh compares: data sets under settings.

A line of SETTINGS is one setting, words as on the command line; `NAME=<a|b>` is a list of the lines
"a" and "b". "@" and names (with wildcards, joined by commas) in front say which data sets it is
for; without them a few are taken by turns. The first data set gets the words on the command line
and lists as files, the second one all in its Control File, the third one all on the command line.
"""
import fnmatch
import itertools
import random
import re
import zlib
from dataclasses import dataclass
from pathlib import Path

import compare_data

TEXT_OR_LIST = ("GROUPS", "MODELS", "RESCORE", "IREFER")  # a file is told by a "*" before its name
TABLES = ("1 3.1 3.2 4.1 5 6.1 6.4 6.5 7.1 8.1 9 10.1 10.4 10.5 11.1 12 13.1 14.1 15.1 16 17.1 18.1 "
          "19.1 21.1 25.1 26.1 30 31")
ASKED = ["TFILE=tables.txt", "PFILE=p.txt", "IFILE=i.txt", "SFILE=s.txt", "ISFILE=is.txt"]
COMMAND = ["control.txt", "report.txt", "BATCH=Y"]
WORD = re.compile(r'(?:[^\s<"]|<[^>]*>|"[^"]*")+')
EXAMPLES_BY_TURNS, GENERATED_BY_TURNS, MIXES = 2, 2, 300

# Every data set is run with these, the first one blank.
CORE = """

UMEAN=500 USCALE=100 UDECIM=1 LOCAL=Y
UPMEAN=50 USCALE=10 UDECIM=0 CSV=N
USCALE=-1 UDECIM=4 TOTAL=Y REALSE=Y
STBIAS=Y NORMAL=Y HLINES=N
PTBIS=Y LOCAL=L CSV=T ASCII=N
TARGET=Y MUCON=30 OUTFIT=N
CUTLO=-1.5 CUTHI=2
CUTHI=1 USCALE=50
EXTRSC=.5 TOTAL=Y
MODELS=R
MODELS=S MUCON=60
MODELS=F MUCON=60
GROUPS=0
STKEEP=N
PWEIGHT=<1 2|3-9 3|12 0|20-11 2>
PWEIGHT=<1-40 .5|41-50 1.75> IWEIGHT=<2 .5|4-6 1.25>
PWEIGHT=$S8W3 TOTAL=Y
IWEIGHT=<1 2|3 0|4-5 3> PTBIS=Y
IAFILE=<1 -.5|3-4 .75|5 1> UDECIM=3
IAFILE=<2 450|7 520> UMEAN=500 USCALE=100 LOCAL=Y
PAFILE=<1 .5|4-9 -1|11 2> REALSE=Y
PAFILE=$S12E15 MUCON=30
IAFILE=<3 -1> PAFILE=<2 1|5 -1> STBIAS=Y
SAFILE=<1 -.7|2 .4> MUCON=60
SAFILE=<1 1 -.2|5 1 .3|8 1 1> MUCON=60
SDFILE=<1 2|5 2>
SDFILE=<2>
IDFILE=<2|5-6> PDFILE=<1-5|9|30-28>
IDFILE=<+1-9> PDFILE=<+10-60>
EDFILE=<1-3 1-4 0|4 2 1|6 1-99 " "|7-9 3 2>
MUCON=2 MPROX=1 TOTAL=Y LOCAL=Y
ISORT=14 PSORT=6 FITI=0 FITP=0 CSV=Y
MAXPAGE=60 FORMFD=1 LINELEN=132 HEADING=N
MISSING=0
"""

SETTINGS = """
# data: where they are and how a record is laid out
@verbal-aggression,math-exam,student-attitudes MS=responses.txt
@verbal-aggression,math-exam,student-attitudes DATA=responses.txt+responses.txt
@two-files DATA=two.txt
@two-files DATA=two.txt+one.txt+two.txt
@two-files DATA="one.txt + two.txt"
@verbal-aggression,scale3 NI=10
@math-exam,choice,scale5 NI=10 INUMB=Y
@verbal-aggression,math-exam NI=30
@verbal-aggression,scale5,wide NI=1 INUMB=Y
@verbal-aggression,math-exam ITEM1=10 NI=11
@scale3,wide,dichotomous ITEM1=18 NI=8 INUMB=Y
@scale3,utf8,boxes NAME1=5 NAMLEN=6
@examples NAME1=3
@* NAMLEN=1
@examples,utf8,boxes NAMLEN=5
@scale3,verbal-aggression,two-forms NAMLEN=0
@scale3,commas,conspiracy-beliefs NAMLEN=200
NAMLMP=3
NAMLMP=12
@verbal-aggression,math-exam XWIDE=2 NI=6 INUMB=Y CODES="0001021011122021220 1 2 "
@verbal-aggression,scale3 XWIDE=3 NI=4 INUMB=Y CODES="000001010011100101110111"
@wide XWIDE=1 CODES=0123456789 NI=20 INUMB=Y
@wide CODES=" 0 1 2 3"
@wide NEWSCR=" 0 0 1 1 2 2 3 3 4 4 5 5 6"
@wide NEWSCR=" 0 0 0 1 1 1 2 2 2 3 3 3 4" STKEEP=N
@wide GROUPS="A A A A A B B B B B " MODELS="R R R R R S S S S S "
@verbal-aggression,scale3 FORMAT=(7A,10A) NI=8 ITEM1=8 INUMB=Y
@verbal-aggression,scale3 FORMAT=(T16,8A1,T1,6A1) NI=8 ITEM1=1 NAME1=9 NAMLEN=6 INUMB=Y
@verbal-aggression,scale3 FORMAT=(15X,2(1A,2X),T1,5A) NI=2 ITEM1=1 NAME1=3 INUMB=Y
@verbal-aggression,scale3 FORMAT=(6A,T20,4A2) XWIDE=2 NI=4 ITEM1=7 CODES="000102101112" INUMB=Y
@conspiracy-beliefs,commas DELIM=Y
@conspiracy-beliefs,commas SE=","
@conspiracy-beliefs,commas DELIM=, MUCON=5
@conspiracy-beliefs,commas ITEM1=4 NI=8 INUMB=Y
@conspiracy-beliefs,commas NAME1=3 NAMLEN=2
@blanks DELIM=S ITEM1=5 NI=8 INUMB=Y
@blanks,quoted DELIM= ITEM1=9 NI=5 INUMB=Y
@bars DELIM="|" NAMLEN=4
@verbal-aggression,math-exam DELIM=S NAME1=2 ITEM1=3 NI=1 INUMB=Y CODES=0123456789
ITLEN=1
ITLEN=4
ITLEN=30
@examples,utf8,boxes,scale5 INUMB=Y
@* ILFILE=<first label|second ; label|"third"||fifth|6|7|eighth|ninth one is rather long|10|11|12>
@dichotomous,verbal-aggression ILFILE=<one|two>
SPFILE=<UDECIM=3|TITLE="From a further file"|UMEAN=10>
SPFILE=<IDFILE=*|2|4-5|*|MUCON=10> MUCON=20
@two-forms MFORMS=<D=form-a.txt|P1-4=1-4|I1-12=6-17>
@two-forms MFORMS=<D=form-b.txt|L=2|P1-4=13-16|P6="b"|I9-20=17-28|#>
@two-forms MFORMS=<d=form-a.txt|p1-4=1-4|c6=1|i1-12=6-17 ; items>
@two-forms MFORMS=<D=form-b.txt|L=1|P1-4=13-16|L=1|C16-27=1-12|I1="1"|#>
@two-forms IDFILE=<9-12>
@two-forms IDFILE=<+1-12> PDFILE=<1-30>
@two-forms PSELECT=?????B
@two-forms IAFILE=<9 -.9|10 -.2|11 .5|12 1.2>
EDFILE=<1 1 1|2-5 3-4 0>
EDFILE=<1-20 1|21-30 2 "">
@choice,letters EDFILE=<1-20 1 A|5 2-3 'a'|6 4 "b"|900 1 C|7 900 D|x y z>
@* MAKEKEY=Y
@choice MAKEKEY=Y IDFILE=<3> PDFILE=<+20-90> KEY2=CCCCCCCCCCCCCCCC

# scoring
@verbal-aggression,scale3,groups* CODES=12
@verbal-aggression,scale3,groups* CODES=01
@verbal-aggression,scale3,extreme CODES=210
@verbal-aggression,scale3,extreme CODES=02
@verbal-aggression,scale3,student-attitudes CODES=0123456
@verbal-aggression,scale3,conspiracy-beliefs CODES="0 12"
@scale5,conspiracy-beliefs CODES=24
@verbal-aggression,scale3,extreme NEWSCR=011
@verbal-aggression,scale3,extreme NEWSCR=001
@verbal-aggression,scale3,extreme NEWSCR=210
@verbal-aggression,scale3,extreme NEWSCR=024
@verbal-aggression,scale3,extreme NEWSCR=024 STKEEP=N
@verbal-aggression,scale3,extreme NEWSCR=135 STKEEP=Y GROUPS=0
@verbal-aggression,scale3,extreme NEWSCR=0*2
@verbal-aggression,scale3,extreme NEWSCR=0129
@verbal-aggression,scale3,extreme NEWSCR=01
@scale5,scale5-missing NEWSCR=01123
@scale5,scale5-missing NEWSCR=11224 STKEEP=N GROUPS=0
@verbal-aggression,scale3 NEWSCR=011 RESCORE=2
@verbal-aggression,scale3 NEWSCR=210 RESCORE=111100000000000000001111
@verbal-aggression,scale3 NEWSCR=210 RESCORE=<1-5 1|7 0|9 1>
@verbal-aggression,scale3 RESCORE=<3-2 1>
@reversed RESCORE=<1 1|3-4 1|11 1>
@reversed RESCORE=00000000000
@choice KEY=BADCABDCDACBBADC
@choice KEY1=BADCABDCDACBBADC KEY2=CCCCCCCCCCCCCCCC
@choice KEY1=BADCABDCDACBBADC KEY2=ABABABABABABABAB KEY3="C C C C C C C C "
@choice KEY1=BADCABDCDACBBADC KEY2=ABABABABABABABAB KEYSCR=32
@choice KEY1=BADCABDCDACBBADC KEY2=ABABABABABABABAB KEYSCR=21 RESCORE=1111111100000000 CODES=ABCD01
@choice KEY1=BADCAB
@choice KEY1=BADCABDCDACBBADCAAAA
@choice MISSING=0
@choice KEY1=badcabdcdacbbadc
@choice ALPHANUM=DCBA KEY1=
@choice CODES=ABCD* KEY5=BADCABDCDACBBADC
@choice CODES=ABC
@choice IREFER=AAAABBBBCCCCDDDD IVALUEA=0100 IVALUEB=1000 IVALUEC=0010 IVALUED=0001 KEY1=
@verbal-aggression,scale3 IREFER=AAAAAAAAAAAABBBBBBBBBBBB IVALUEA=011 IVALUEB=210
@verbal-aggression,scale3 IREFER=<1-5 A|6 B|7-24 C> IVALUEA=012 IVALUEB=001 IVALUEC=000
@verbal-aggression,scale3 IREFER=AAAAA IVALUEA=011
@scale5 IREFER=XXXXXXYYYYYY IVALUEX=12345 IVALUEY=11233 GROUPS=XXXXXXYYYYYY
@scale5 IREFER=XXXXXXYYYYYY IVALUEX=54321 IVALUEY=1*3*5 STKEEP=N GROUPS=0
@letters ALPHANUM=abcd NEWSCR=
@letters ALPHANUM=dcba NEWSCR= CODES=dcba
@letters NEWSCR=0012 GROUPS=0
@letters NEWSCR=
@verbal-aggression,scale3 ALPHANUM=012
@*missing,student-attitudes,two-forms MISSING=0
@*missing,student-attitudes,conspiracy-beliefs MISSING=1
MISSING=255
MISSING=300
MISSING=-1
@verbal-aggression,scale3,extreme CATEGS=3
@scale5,wide CATEGS=5
@unused*,student-attitudes,conspiracy-beliefs STKEEP=Y
@unused*,student-attitudes,conspiracy-beliefs STKEEP=N
@unused*,student-attitudes MODELS=S STKEEP=Y MUCON=60
@unused*,student-attitudes MODELS=F STKEEP=N MUCON=60
@unused*,student-attitudes GROUPS=0 STKEEP=N USCALE=10
@unused*,student-attitudes STEPKEEP=0

# groups and models
@examples,scale*,partial GROUPS=0
@examples,partial GROUPS=0 STKEEP=N CSV=N
@examples,partial GROUPS=0 USCALE=-10 UDECIM=3 LOCAL=L
@student-attitudes,verbal-aggression,scale* GROUPS=AAAAABBBBBBBB
@student-attitudes,verbal-aggression,scale* GROUPS=00000BBBBBBBB
@student-attitudes,verbal-aggression,scale* GROUPS="A A B B 0 0 A B C D D D 0"
@student-attitudes,verbal-aggression,scale* GROUPS=<1-5 A|6-9 B|10 0|11-24 C>
@student-attitudes,verbal-aggression,scale* GROUPS=<5-1 x|7 y>
@student-attitudes,verbal-aggression,scale* GROUPS=<1-24 0>
@student-attitudes,verbal-aggression,scale* GROUPS=aaaabbbbAAAAB
@examples MODELS=S MUCON=60
@examples MODELS=F MUCON=60
@examples MODELS=R
@student-attitudes,verbal-aggression GROUPS=0 MODELS=S MUCON=60
@student-attitudes,verbal-aggression GROUPS=0 MODELS=F MUCON=60
@student-attitudes,scale3 GROUPS=AAAAABBBBBBBBB MODELS=SSSSSRRRRRRRRR MUCON=60
@student-attitudes,scale3 GROUPS=AAAAABBBBBBBBB MODELS=<1-5 F|6-14 R> MUCON=60
@groups*,success*,failure* MODELS=S LOCAL=L REALSE=Y
@groups*,success*,failure* MODELS=F TOTAL=Y UDECIM=4
@groups*,success*,failure* USCALE=100 UMEAN=500
@groups*,success*,failure*,own-steps* STBIAS=Y STKEEP=N
@success*,failure*,own-steps* IAFILE=<1 -1|2 .3> SAFILE=<1 1 -.4|2 1 .2>
@success*,failure*,own-steps* SDFILE=<1 2|2 1> TOTAL=Y
@success*,failure*,own-steps* PWEIGHT=$S8W3 IWEIGHT=$S5W3
@success*,failure*,own-steps* CUTLO=1 CUTHI=1

# lists for single persons, items and steps
IAFILE=<2 1.25>
IAFILE=<1 .5|2 -.5> USCALE=10
IAFILE=<1 60|2 40> USCALE=10 UMEAN=50
IAFILE=<1-3 1|3 -2|4 - 2|99 1|x|"2 forms"> UDECIM=4
IAFILE=<1,.5|"3",-1|5	1>
@generated-fixed IAFILE=$S9W4
@generated-fixed IAFILE=$S9E12 PAFILE=$S12W4 USCALE=10
IAFILE=<1 -4|2 4> UANCHOR=N
IAFILE=<1 55|2 45> UASCALE=10 USCALE=100 UMEAN=500
PAFILE=<1-5 1>
PAFILE=<1 0|2 0|3 -2.5|4-4 1> IAFILE=<1 0>
PAFILE=<7 510|8 490> UMEAN=500 USCALE=100
PAFILE=<1 1> UASCALE=2 UPMEAN=3
SAFILE=<1 -1|2 1>
SAFILE=<1 -1|2 1|1> USCALE=10
@verbal-aggression,conspiracy-beliefs,scale3,scale5 SAFILE=<1 -.8|2 .9|3 .1> STBIAS=Y
@verbal-aggression,conspiracy-beliefs,scale3,scale5 SAFILE=<0 1 -.8|1 2 .9|9 9 9> LOCAL=Y
@student-attitudes,partial SAFILE=<1 1 -.5|1 2 .5|7 1 -1|7 2 0> TOTAL=Y
@student-attitudes,partial SAFILE=<2 1 -50|2 2 50|3-6 1 0> USCALE=100
SDFILE=<1> PTBIS=Y
@verbal-aggression,conspiracy-beliefs,scale5,unused SDFILE=<2> SAFILE=<1 -.5|2 1>
@student-attitudes,partial,own-steps SDFILE=<2 1|7 2> SAFILE=<2 1 .4|2 2 -.3|7 1 0|7 1 1>
@verbal-aggression,conspiracy-beliefs,student-attitudes,scale5 SDFILE=<2>
@student-attitudes,partial,groups SDFILE=<3 1|7 2|8-9 1>
IDFILE=<3>
IDFILE=<-3|5-7|99>
IDFILE=<3 7> CSV=N
IDFILE=<+2-9|-4>
IDFILE=<1-8|+3|+5-9>
IDFILE=<"2 forms"|"2 1"|4 .5 7>
IDFILE=<1-8>
PDFILE=<1>
PDFILE=<5 20|30-31> PSORT=3
PDFILE=<+1-50>
PDFILE=<1-45|+3-60> TOTAL=Y
PDFILE=<-9|100000>
IDFILE=<3> IAFILE=<3 1|4 0> IWEIGHT=<3 2>
PDFILE=<5-6> PAFILE=<5 1|7 0> PWEIGHT=<5 2|7 3>
IDFILE=<2> EDFILE=<1-9 2 1> MAKEKEY=Y
IWEIGHT=<1 2>
IWEIGHT=<1 2|1 3|1-2 .5>
IWEIGHT=<1 .5|2-4 1.5|6 0>
IWEIGHT=<1-99 1>
IWEIGHT=<1-99 3> LOCAL=Y
@generated-fixed IWEIGHT=$S5W3
@generated-fixed IWEIGHT=$S7W1+".5" PWEIGHT=$S10W1+".5"
PWEIGHT=<1 2>
PWEIGHT=<1-99999 2> STBIAS=Y
PWEIGHT=<3 0|4-8 .25|9 10> REALSE=Y
PWEIGHT=<1-20 0> TOTAL=Y
PWEIGHT=<1 -2|2 abc|3 1e3>
@generated-fixed PWEIGHT=$S8W3 PTBIS=Y
@generated-fixed PWEIGHT=$S8E9 TOTAL=Y
@commas,tabs,bars PWEIGHT=$S2W1
@commas,conspiracy-beliefs PAFILE=$S2E2 MUCON=20
PIVOT=<1 .5>
PIVOT=<1 1>
PIVOT=<2 .5|1 1.2>
@verbal-aggression,conspiracy-beliefs,scale5 PIVOT=<1 1> SAFILE=<1 -.5>
@verbal-aggression,conspiracy-beliefs,scale5,unused PIVOT=<1-3 1.5>
@verbal-aggression,conspiracy-beliefs,scale5,unused PIVOT=<1 2> IAFILE=<1 .5>
@student-attitudes,partial,groups PIVOT=<1 .5|6 1.3|7 2> USCALE=10
@student-attitudes,partial,groups PIVOT=<2 0|3 9|4-8 1> STBIAS=Y
ISELECT=*
ISELECT=?????*
@verbal-aggression ISELECT=??Want
@verbal-aggression,math-exam ISELECT={S-a-m}*
@verbal-aggression ISELECT=S{13}{A-Z--}*
@generated-fixed ISELECT=???????? IDFILE=<2>
@generated-fixed ISELECT="I?? { 0-9}{ .}{12}*"
@verbal-aggression,math-exam PSELECT=?????M
@conspiracy-beliefs PSELECT="P{0-2}???? f"
@student-attitudes PSELECT=P{0--1}????{ }{F}
@generated-fixed PSELECT="???? {F}"
@generated-fixed PSELECT="???? M"
@generated-fixed PSELECT=???{5-9} PDFILE=<1-20>
CUTLO=1
CUTLO=-2.5 TOTAL=Y
CUTHI=1.5
CUTHI=.5 CUTLO=.5
CUTHI=100 CUTLO=150 USCALE=100 UMEAN=500
CUTHI=1 IAFILE=<1 0|3 1> STBIAS=Y
CUTLO=1 PWEIGHT=<1-20 2>
CUTLO=.1 CUTHI=.1
ANCHOR_Q=Y
PANCHQ=Y SANCHQ=Y
IDELQU=Y PDELQU=Y SDELQU=Y
UANCHOR=Y IAFILE=<1 0|2 1>

# estimation and fit
LCONV=.1
LCONV=.0001 RCONV=.001
LCONV=0 MUCON=25
RCONV=1
RCONV=5 LCONV=1
RCONV=0 MUCON=15
MPROX=1
MPROX=3
MPROX=50
MPROX=-1
@dichotomous MPROX=0
MUCON=-1
MUCON=1
MUCON=3
MUCON=200 LCONV=.00001 RCONV=.0001
EXTRSC=.1
EXTRSC=.5
EXTRSC=0
EXTRSC=-2 TOTAL=Y
MM=.25 USCALE=10
@verbal-aggression,math-exam,pairs,scale5 PAIRED=Y
@verbal-aggression,math-exam,pairs,scale5 PAIRED=Y LOCAL=Y TOTAL=Y
@pairs PAIRED=N
@pairs PWEIGHT=<1-50 2> UDECIM=4
STBIAS=Y
STBIAS=Y USCALE=10 REALSE=Y
STBIAS=Y IDFILE=<3> PWEIGHT=<1-9 2>
TARGET=Y MUCON=40
TARGET=Y MUCON=20 LOCAL=Y REALSE=Y
TARGET=Y MUCON=20 STBIAS=Y PWEIGHT=<1-9 .5>
LOCAL=Y
LOCAL=L
LOCAL=L NORMAL=Y
LOCAL=2
NORMAL=Y
NORMAL=Y LOCAL=Y TOTAL=Y
PTBIS=Y
PTBIS=Y TOTAL=Y
PTBIS=Y PDFILE=<1-9> IWEIGHT=<2 2>
PRCOMP=R
PRCOMP=N
PRCOMP=L

# scale of the user
UMEAN=5
UMEAN=-2.5 UDECIM=1
UMEAN=500 USCALE=100 UDECIM=0
UMEAN=500 USCALE=100 UDECIM=1
UMEAN=500 USCALE=100 UDECIM=2
UMEAN=500 USCALE=100 UDECIM=3
UMEAN=500 USCALE=100 UDECIM=4
UIMEAN=50 USCALE=10
UPMEAN=0
UPMEAN=100 USCALE=-15
USCALE=10
USCALE=100
USCALE=-1
USCALE=.01
USCALE=1000 UDECIM=4
USCALE=5000 UMEAN=20000
USCALE=0
USCALE=10 UDECIM=0
USCALE=10 UDECIM=3
USCALE=-10 UDECIM=4 UMEAN=50
UDECIM=0
UDECIM=1
UDECIM=3
UDECIM=4
UDECIM=9
HIADJ=.1
HIADJ=.5 LOWADJ=.5
LOWADJ=.1 USCALE=10
LOWADJ=-.4 HIADJ=0

# report
TITLE=x
TITLE="A title that is rather longer than the sixty columns that are kept of it, with; more"
TITLE=" "
TITLE="D'accord `quoted` = fine"
TFILE=<3.1>
TFILE=<6 - - 1|10.1 1 5|13.1 - 3|14 2 4 6|"17.1"|18.1 ; persons>
TFILE=<10.1 .5|10.1 1 9 2|6.1 2 3 4 5 6 7 8 9|25.1 -1|26.1 99999>
TFILE=<3|6|10|13|14|15|17|18|19|25|26>
TFILE=<3.0|6.0|10.9|13.01|14.1.1|0|41|-3|x|TABLE 13.1|1.0|7.2.1>
TFILE=<17.1|17.1|13.1|13.1|6.1|3.1>
TFILE=<1|2.1|3.2|4|5|7|8|9|11|12|16.3|20|21|22|23|24|27|28|29|30|31>
TFILE=<20|20.3|20.2 -3 3 10> MAXPAGE=20
TFILE=<20.1|20.3> USCALE=-100 UMEAN=500 MRANGE=400 UDECIM=0
TFILE=<20|20.3> IWEIGHT=<1 0|2-4 .5|5 200> ASCII=N
TABLES=1111111111111111111111111111111 TFILE=
TABLES=0010010001001110111000001100000 TFILE=
TABLES=YNYNNYNNNYNNYYYNYYYNNNNNYY TFILE=
TABLES=0010010001001110111000001100000 CHART=Y DISTRT=N STEPT3=N TFILE=
TABLES=001 INUMB=Y
TABLES=00000000000001100001 INUMB=Y TFILE=
PERSON=CHILD ITEM=Task
PERSON=x ITEM=y
PERSON=Examination-candidate ITEM="Test question"
ASCII=N
ASCII=N MAXPAGE=40 HEADING=N
@utf8,boxes ASCII=N CSV=Y
@utf8,boxes CSV=N ITLEN=5
FORMFD=1
FORMFD=* MAXPAGE=50
FORMFD=^ MAXPAGE=30
LINELEN=0
LINELEN=40
LINELEN=60
LINELEN=132
LINELEN=500
LINELEN=9999 MAXPAGE=5
MAXPAGE=60
MAXPAGE=20
MAXPAGE=25 HEADING=N FORMFD=1
MAXPAGE=-1
HEADING=N
OUTFIT=N
OUTFIT=N FITI=1 FITP=1
TOTAL=Y
TOTAL=Y PDFILE=<1-9> IDFILE=<3>
REALSE=Y
REALSE=Y LOCAL=L TOTAL=Y
FITI=0
FITI=1 FITP=1
FITI=-1 FITP=-1
FITP=0
FITP=3 FITI=4
MFIT1=.5 MFIT2=.5
ISORT=2
ISORT=5
ISORT=40
PSORT=2
PSORT=6
PSORT=40
ISORT=0 PSORT=-1
STEPT3=N
CURVES=001
CURVES=000
TABLES=001000000000000000001 TFILE=
TABLES=001000000000000000001 TFILE= STEPT3=N GROUPS=0
TABLES=000000000000000000001 TFILE= CURVES=010 MAXPAGE=30 STEPT3=N
TABLES=000000000000000000001 TFILE= USCALE=100 UDECIM=0 MRANGE=250
TABLES=001 TFILE= USCALE=-10 UDECIM=4 HEADING=N
TABLES=001 TFILE= STKEEP=Y NEWSCR=0246 CFILE=<0 never|2 sometimes|4+3 often> CLFILE=<"1" one|2+1 two>
TFILE=<21 -2 2 - - .5 .1|21 - - 30|3.2 5 -50 - - - .01|21.2 - - 1e9>
CHART=Y
CHART=Y TFILE=<6|10|13.2|17.2>
DISTRT=N
OSORT=S
OSORT=V
OSORT=Q
MNSQ=N
MNSQ=N LOCAL=L FRANGE=1
MNSQ=N FITP=1 FITI=1 LINELEN=132
FRANGE=1.5 MAXPAGE=50
FRANGE=-20 MRANGE=2 MAXPAGE=20
FITP=-9 FITI=-9 LINELEN=1 MAXPAGE=20
TFILE=<4.1 -3 3 8|5.2 - - 3|8.1 -99 99|9.1 - - .01|9.2 - - 900>
CFILE=<0 never|1 sometimes|2+3 often>
CFILE=<1 low|A+2 high> CLFILE=<0+1 right|*+1 none>
CLFILE=<0 no|1 yes|3+1 maybe>
IMAP=$S1W3 PMAP=$S6W1
IMAP=$S9E12 PMAP=$S1W2+$S6W1
IMAP=$S2W3+"-"+$S1W1 PMAP=$S2W2 ISORT=0 PSORT=0
IMAP=$S2 PMAP=none
NAMLMP=-4 INUMB=Y
TFILE=<1.0 -4 4 3|1.10|12.2 - - 2.5 - 4 2|12.12|16.3 -1 1 8>
TFILE=<1.4 - - - 3 2 2|12.5 - - 5|12.6 2 -2> CFILE=<0 never|2+3 often> CLFILE=<1 once>
TFILE=<1|12|16> MAXPAGE=25 LINELEN=60 HEADING=N
TFILE=<1|12|16> LINELEN=0 NAMLMP=30
T1I=2 T1P=5
T1I=-1 T1P=1
T1I=3 T1P=40 MRANGE=2
MRANGE=3 FRANGE=2
MRANGE=-5 FRANGE=4
CATREF=1
CATREF=2
G0ZONE=20 G1ZONE=80
G0ZONE=90 G1ZONE=10
LOA=.3 TFILE=<23|24.2>
LOA=-.5 TFILE=<23|24.2>
TFILE=<23|24> PRCOMP=R
TFILE=<23|24> PRCOMP=L
TFILE=<23|24> PRCOMP=O
TFILE=<23|24> PRCOMP=K
TFILE=<23|24> PRCOMP=H
TFILE=<23|24> PRCOMP=G
TFILE=<23|24> PRCOMP=N
TFILE=<24.1|23.1|23.2 -4 4 3|23.3> MAXPAGE=30 HEADING=N
TFILE=<23|24.2> IWEIGHT=<2 .5|3 12> PWEIGHT=<1-9 2> ASCII=N
@verbal-aggression,scale3 TFILE=<23|24.2> GROUPS=<1-5 A|6-9 B|10-24 C> USCALE=-10 UDECIM=0
ISUBTOTAL=<$S1W1> PSUBTOTAL=<$S6W1>
ISUBTOTAL=<$S1W2|$S5W3> PSUBTOTAL=$S1W2
DIF=<$S6W1> DPF=<$S1W2>
DIF=<$S6W1|$S1W2> DPF=$S9W1
DIF=$S3W2 DPF=$s2e2 MODELS=S USCALE=100 MAXPAGE=50
DIF=$S1W1+"/"+$S3W1 DPF=<$S1W1|nonsense|$S2W1> MODELS=F USCALE=-1 UDECIM=4
DIF=$S2W1 DPF=$S1W1 PWEIGHT=<1 2|3-9 0> IWEIGHT=<1 2|2 0> ASCII=N STBIAS=Y
DIF=$S1W700 DPF=$S1W600 TOTAL=Y
CURVES=110
TOTAL=1 REALSE=y STBIAS=x NORMAL=0 PTBIS=n LOCAL=y
CHARTF=3 EXTREME=2 ENFILE=x NCOLS=3

# output files
PFILE= IFILE= SFILE= ISFILE=
PFILE=only.txt IFILE= SFILE= ISFILE=
PFILE="a name with blanks.txt"
CSV=N
CSV=Y
CSV=T
CSV=,
CSV=N HLINES=N
CSV=Y HLINES=N
CSV=T HLINES=N TOTAL=Y
HLINES=N CSV=N UMEAN=500 USCALE=100 UDECIM=4
CSV=Y REALSE=Y LOCAL=L UDECIM=3 USCALE=10
SCFILE=sc.txt RFILE=r.txt XFILE=x.txt GRFILE=gr.txt
SCFILE=sc.txt CSV=Y UDECIM=4 USCALE=-10 UMEAN=50
SCFILE=sc.txt CSV=T HLINES=N IWEIGHT=<1 0|2-4 .5|5 1000000000>
SCFILE=control.txt
XFILE=x.txt RFILE=r.txt CSV=N IDFILE=<2> PDFILE=<3-5|9> IWEIGHT=<1 2|3 .5>
XFILE=x.txt RFILE=r.txt CSV=Y MODELS=S STKEEP=N CUTLO=-1.5
XFILE=x.txt RFILE=r.txt CSV=T HLINES=N MODELS=F USCALE=-10 STBIAS=Y
XFILE=x.txt RFILE=r.txt CSV=Y PAFILE=<1 .5|4-9 -1|11 2> GROUPS=0
XFILE=responses.txt RFILE=nowhere/r.txt
RFILE=steps.txt SAFILE=steps.txt
DISFILE=dis.txt ICORFILE=ic.txt PCORFILE=pc.txt GUFILE=gu.txt SIFILE=si.txt

# runs that end early or in doubt
DATA=nowhere.txt
DATA=responses.txt+nowhere.txt
DATA=.
TFILE=nowhere.txt
TFILE=report.txt
SPFILE=nowhere.txt
ILFILE=nowhere.txt
CFILE=nowhere.txt
CLFILE=nowhere.txt
MFORMS=nowhere.txt
EDFILE=nowhere.txt
IAFILE=nowhere.txt
PAFILE=nowhere.txt
SAFILE=nowhere.txt
SDFILE=nowhere.txt
IDFILE=nowhere.txt
PDFILE=nowhere.txt
IWEIGHT=nowhere.txt
PWEIGHT=nowhere.txt
PIVOT=nowhere.txt
GROUPS=<nonsense>
MODELS=<1-5>
RESCORE=<x>
IREFER=<1- A>
ISUBTOTAL=nowhere.txt PSUBTOTAL=nowhere.txt DIF=nowhere.txt DPF=nowhere.txt
PFILE=nowhere/p.txt
IFILE=control.txt
SFILE=report.txt
ISFILE=tables.txt
PFILE=same.txt IFILE=same.txt
NI=0
NI=40000
NI=x
NI=1e99
ITEM1=0
ITEM1=32000
ITEM1=30000
NAME1=0
NAME1=40000
XWIDE=0
XWIDE=2
XWIDE=7
CODES=
CODES=9
CODES=xyz
CODES=001122
CODES=0
CODES=0 MISSING=1
CATEGS=9
XWIDE=2 CODES=012
KEY1=
KEY1=9999999999999999999999999999
KEY100=0
KEYFROM=1
RESFROM=Y
GRPFROM=Y
MODFROM=Y
GROUPS=A
GROUPS=AB
GROUPS="A  B"
MODELS=X
MODELS=RS
MODELS=RSRSRSRSRSRSRSRSRSRSRSRS GROUPS=A
IREFER=AB
IVALUEA=0123456789
FORMAT=(A5,4A1
FORMAT=5A
FORMAT=()
FORMAT=(99999A)
FORMAT=((((5A))
FORMAT=(5A,Q3)
FORMAT=(/,/,5A)
PIVOT=<nonsense>
PIVOT=<1>
MFORMS=<D=nowhere.txt|I1=1>
MFORMS=<I1=1>
MFORMS=<D=tables.txt|I1-3=1-2>
MFORMS=<D=tables.txt|Q1=1>
MFORMS=<D=tables.txt|L=x>
IAFILE=$S0W2
IAFILE=$X1W2
PWEIGHT=$S5E3
PWEIGHT=$S3
PAFILE='$S1W2
UMEAN=abc
UDECIM=
USCALE=1e40
LCONV=nan
NONSENSE=1
ITE=5
=5
DELIM=;
EXTRSC=text
PDFILE=<1-99999>
IDFILE=<1-99999>
PSELECT=nobody
ISELECT=nothing
IAFILE=<1-99999 0>
PAFILE=<1-99999 0>
PAFILE=<1-99999 0> IAFILE=<1-99999 0>
PWEIGHT=<1-99999 0>
IWEIGHT=<1-99999 0>
SDFILE=<0|1|2|3|4>
SAFILE=<1 99|2 -99>
IAFILE=<1 1e30|2 -1e30>
UMEAN=1e9 USCALE=1e6
CUTLO=.001 CUTHI=.001 MUCON=20
MUCON=1 LCONV=-1 RCONV=-1
"""

# Whole command lines in the directory of an example; "|" parts what is typed, a line each.
COMMAND_LINES = """
BATCH=Y
control.txt BATCH=Y
nowhere.txt report.txt BATCH=Y
. report.txt BATCH=Y
control.txt . BATCH=Y
control.txt nowhere/report.txt BATCH=Y
control.txt control.txt BATCH=Y
control.txt responses.txt BATCH=Y
control.txt /dev/full BATCH=Y
control.txt report.txt third.txt BATCH=Y
control.txt report.txt BATCH=Y PFILE=/dev/full
control.txt report.txt BATCH=Y IDFILE=* 2 3-4
control.txt report.txt BATCH=Y IDFILE=* 2 3-4 * UDECIM=3
IDFILE=* 2 * control.txt report.txt BATCH=YES
control.txt report.txt BATCH=Y BATCH=N
control.txt report.txt batch=1 umean=5
--help
--version
control.txt report.txt |exit
control.txt report.txt |nonsense||EXIT
control.txt report.txt UDECIM=3 TABLES=001
control.txt |report.txt|UMEAN=500 USCALE=100|exit
control.txt ||
 |nowhere.txt|control.txt|control.txt|report.txt|UDECIM=1 TABLES=0010000000000100010|exit
control.txt report.txt ANCHOR_Q=Y PANCHQ=Y |3 1.5|0|2 -1|0|exit
control.txt report.txt IDELQU=Y PDELQU=Y SDELQU=Y SANCHQ=Y |3-5|0|7|0|1|0|1|0|exit
control.txt report.txt CODES= |exit
control.txt report.txt DATA=nowhere.txt |responses.txt|exit
"""

# From each line one word is taken, or none, for the mixes.
MIXED = """
USCALE=10 USCALE=100 USCALE=-1 USCALE=-10
UMEAN=50 UMEAN=500 UPMEAN=5
UDECIM=0 UDECIM=1 UDECIM=3 UDECIM=4
TOTAL=Y
REALSE=Y
LOCAL=Y LOCAL=L
NORMAL=Y
PTBIS=Y
STBIAS=Y
PAIRED=Y
TARGET=Y
MODELS=S MODELS=F
GROUPS=0
STKEEP=N
CUTLO=1 CUTLO=2
CUTHI=1 CUTHI=2
EXTRSC=.1 EXTRSC=.5
MPROX=1 MPROX=30
LCONV=.05 RCONV=.01
ISORT=4 ISORT=14
PSORT=2 PSORT=6
OSORT=V OSORT=D
MAXPAGE=60
LINELEN=60 LINELEN=132
ASCII=N
FORMFD=1
HEADING=N
OUTFIT=N
FITI=0 FITI=1
FITP=0 FITP=1
CSV=N CSV=Y CSV=T
HLINES=N
NAMLEN=4
ITLEN=5
PWEIGHT=<1-9 2|12 .5|15 0>
IWEIGHT=<2 2|5-6 .5>
IAFILE=<1 0|4 1>
PAFILE=<2 1|6-7 -1>
SAFILE=<1 .5>
SDFILE=<2>
IDFILE=<3>
PDFILE=<4-8>
EDFILE=<1-30 2 1>
PIVOT=<1 .6>
MISSING=0
HIADJ=.4 LOWADJ=.1
UASCALE=2 UANCHOR=N
"""


@dataclass
class Case:
    data: str
    setting: str
    files: dict
    words: list
    typed: bytes = b""

    @property
    def name(self):
        return f"{self.data}/{self.setting}"


def variable(word):
    return word.partition("=")[0]


def case(name, files, setting, form):
    """One setting; form 0: words and files, 1: control lines and sub-lists, 2: words alone."""
    files = dict(files)
    words = WORD.findall(setting)
    given = {variable(word) for word in words}
    asked = [word for word in ASKED if variable(word) not in given]
    files["tables.txt"] = "\n".join([*TABLES.split(), ""]).encode()
    placed = list(asked)
    for word in words:
        keyword, _, value = word.partition("=")
        if not (value.startswith("<") and value.endswith(">")):
            placed.append(word)
            continue
        lines = value[1:-1].split("|")
        if form == 0 or keyword == "SPFILE":
            file = f"{keyword.lower()}.txt"
            files[file] = "\n".join([*lines, ""]).encode()
            mark = "*" if keyword in TEXT_OR_LIST else ""
            placed.append(f"{keyword}={mark}{file}")
        else:
            # An empty word would end the command line.
            placed += [f"{keyword}=*", *(line for line in lines if line or form == 1), "*"]
    command = list(COMMAND)
    if form == 1:
        head, end, tail = re.split(rb"(?m)^(&END)", files["control.txt"], maxsplit=1)
        files["control.txt"] = head + "\n".join([*placed, ""]).encode() + end + tail
    else:
        command += placed
    return Case(name, setting or "as it stands", files, command)


def rotated(names, key):
    """The names in an order that depends on the key alone, so that a new case moves no other."""
    return sorted(names, key=lambda name: zlib.crc32(f"{key} {name}".encode()))


def setting_lines(text):
    lines = text.removeprefix("\n").removesuffix("\n").split("\n")
    return [line for line in lines if not line.startswith("#")]


def settings_cases(bases, groups):
    for line in filter(None, setting_lines(SETTINGS)):
        patterns, setting = line[1:].split(" ", 1) if line[0] == "@" else ("", line)
        names = []
        for pattern in filter(None, patterns.split(",")):
            names += groups.get(pattern) or fnmatch.filter(bases, pattern)
        names = names or (rotated(groups["examples"], line)[:EXAMPLES_BY_TURNS]
                          + rotated(groups["generated"], line)[:GENERATED_BY_TURNS])
        for form, name in zip(itertools.cycle(range(3)), dict.fromkeys(names)):
            yield case(name, bases[name], setting, form)


def core_cases(bases):
    for name, files in bases.items():
        yield Case(name, "as it stands, with the Tables that it asks for itself", files, COMMAND)
        for setting in setting_lines(CORE):
            yield case(name, files, setting, zlib.crc32((name + setting).encode()) % 3)


def mixed_cases(bases):
    choices = [line.split() if "<" not in line else [line] for line in setting_lines(MIXED)]
    for number in range(MIXES):
        rng = random.Random(number)
        words = [rng.choice(some) for some in rng.sample(choices, rng.randrange(3, 9))]
        # Some of them iterate for long when they meet.
        name = rng.choice(sorted(bases))
        yield case(name, bases[name], " ".join([*words, "MUCON=25"]), number % 3)


def command_line_cases(bases):
    files = {**bases["math-exam"], "tables.txt": TABLES.encode()}
    for line in COMMAND_LINES.strip("\n").split("\n"):
        command, *typed = line.split("|")
        yield Case("command line", line, files, command.split(),
                   "".join(text + "\n" for text in typed).encode())


def laid_in_front(files):
    """Texts for each item that stand in front of the data, laid out like a record."""
    for setting, front in (("KEYFROM=1", ["012012012012"]),
                           ("KEYFROM=2 KEYSCR=23", ["111111000000", "222222111111"]),
                           ("RESFROM=Y NEWSCR=210", ["110000000011"]),
                           ("GRPFROM=Y", ["AAAAAABBBB00"]),
                           ("MODFROM=Y GROUPS=0", ["RRRRRRSSSSFF"]),
                           ("GRPFROM=Y MODFROM=Y RESFROM=Y NEWSCR=012",
                            ["AAAAAABBBBBB", "RRRRRRSSSSSS", "111111111111"])):
        lines = "".join(" " * 15 + text + "\n" for text in front).encode()
        yield case("in front of the data", {
            **files, "control.txt": files["control.txt"].replace(b"&END\n", b"&END\n" + lines)},
            setting, 0)


def odd_files(files):
    """Control Files and data that are spoiled or at the edge."""
    control, data = files["control.txt"], files["data.txt"]
    lines = data.splitlines(keepends=True)
    for name, changed in {
            "empty control file": {"control.txt": b""},
            "no end of control lines": {"control.txt": control.replace(b"&END", b"")},
            "no end of labels": {"control.txt": control.replace(b"END LABELS", b"")},
            "Windows lines": {"control.txt": b"\xef\xbb\xbf" + control.replace(b"\n", b"\r\n"),
                              "data.txt": b"\xef\xbb\xbf" + data.replace(b"\n", b"\r\n")},
            "continued lines": {"control.txt": control.replace(b"CODES=012", b"CODES=0+\n  +12")},
            "continued wrongly": {"control.txt": control.replace(b"CODES=012", b"CODES=0+\n12")},
            "line without =": {"control.txt": b"nonsense\n" + control},
            "short names": {"control.txt": control.replace(b"NAMLEN", b"NAMLE")},
            "long line": {"control.txt": b"TITLE=" + 70000 * b"x" + b"\n" + control},
            "tabs and control bytes": {"control.txt": b"\tTITLE=\ta\x01b\x00c\n" + control},
            "list not ended": {"control.txt": b"IDFILE=*\n2\n" + control},
            "further file that names itself": {"control.txt": b"SPFILE=control.txt\n" + control},
            "empty data": {"data.txt": b""},
            "one person": {"data.txt": lines[0]},
            "two persons": {"data.txt": lines[0] + lines[1]},
            "no last line end": {"data.txt": data.rstrip(b"\n")},
            "short lines": {"data.txt": b"\n".join(line[:20] for line in lines) + b"\n"},
            "blank lines": {"data.txt": b"\n   \n".join(lines)},
            "end-of-file byte": {"data.txt": b"".join(lines[:50]) + b"\x1a\n" + lines[60]},
            "bytes beyond ASCII": {"data.txt": data.replace(b"2", b"\xe2")},
            "NUL bytes": {"data.txt": data + b"P\0\0\0 M 1\0\0\n"},
            "long data line": {"data.txt": data + lines[3].rstrip() + 90000 * b"1" + b"\n"},
            "all alike": {"data.txt": b"".join(line[:15] + 14 * b"1" + b"\n" for line in lines)},
            "all lowest": {"data.txt": b"".join(line[:15] + 14 * b"0" + b"\n" for line in lines)},
            "no data file": {"data.txt": None}}.items():
        kept = {key: value for key, value in {**files, **changed}.items() if value is not None}
        yield case(name, kept, "", 0)


def all_cases(examples):
    generated = compare_data.generated()
    bases = {**compare_data.examples(examples), **generated}
    groups = {"examples": [name for name in bases if name not in generated],
              "generated": list(generated),
              "generated-fixed": [name for name in ("scale3", "partial-missing", "groups", "wide")]}
    cases = itertools.chain(core_cases(bases), settings_cases(bases, groups), mixed_cases(bases),
                            command_line_cases(bases), laid_in_front(generated["scale3"]),
                            odd_files(generated["scale3"]))
    return list({case.name: case for case in cases}.values())
