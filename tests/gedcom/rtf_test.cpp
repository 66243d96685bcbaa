// Tests of rtf_klartext.
