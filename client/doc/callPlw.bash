# bash completion for callPlw: the names of commands after -x, else files.
_callPlw() {
    local word=${COMP_WORDS[COMP_CWORD]} commands='
        parentPID sync activeDoc
        selectCurve selectCurveByPosition selectCurveByIndex indexOfCurveName nextMarkedCurve
        markSelectedCurves markSelectionAsFitData
        YatX Yi iAtX iAtXY setYi selectedIndex fitCurveIndex mouseClick
        setAttributes setAttributes2 setDocAttributes setAxis placeText
        getXRange getYRange getFitRange setXRange setYRange setFitRange
        getVar getFormula setFormula getFormulaParameters setFormulaParameters fit
        newDocument open display activate print saveDocument close
        savePDF saveEPS saveTIFF copyPDF copyTIFF
        newComposition addPDFtoComposition savePDFofComposition
        readData replaceData copy pasteData duplicateAsPlotted setDecimalSeparator inventory
        statistic searchMaxima createCurveAtSelection changeNameOfSelection modifyX modifyY
        show diff delete sortByX sortBySelection swapWithX'
    [ "${COMP_WORDS[COMP_CWORD - 1]}" = -x ] || return
    mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$word")
}
complete -o default -F _callPlw callPlw
